// Recording: the frames of one cine go to a raw file as the scanner holds them, and what the screen
// shows goes to a movie.
#include <Utils_Statics/CCineStore.h>
#include <Utils_Statics/CCineStoreAVI.h>

#include <cstdio>
#include <vector>

namespace {

void Finished(const wchar_t* path, void*)
{
    std::printf("finished %ls\n", path);
}

bool RecordCine()
{
    uDataDesc description;
    description.lines = 128;
    description.samples = 512;
    description.bitsPerSample = 8;
    std::vector<unsigned char> frame(128 * 512);

    CCineStore store;
    store.SetCompleteCallback(Finished, nullptr);
    bool held = store.InitStorage(L"frames.cine", uDataBMode, description, 0, 0, 0, 0, 0, 0);
    for (int i = 0; i < 10; ++i)
        held = held && store.AddFrame(frame.data(), static_cast<int>(frame.size()));
    return store.EndStorage() && held; // a full disk shows in these results and nowhere else
}

bool RecordMovie()
{
    std::vector<DWORD> pixels(320 * 240, 0xFF204060);
    CBitmap screen;
    screen.CreateBitmap(320, 240, 1, 32, pixels.data());

    CCineStoreAVI movie; // its codec is the setting "RecordCodec" of the application's profile
    movie.SetRate(25);
    movie.SetCompleteCallback(Finished, nullptr);
    bool held = movie.InitStorage(L"screen.avi", nullptr, 320, 240, CRect(0, 0, 320, 240), 32);
    for (int i = 0; i < 25; ++i)
        held = held && movie.AddFrame(screen, false, false);
    return movie.EndStorage() && held;
}

} // namespace

int main()
{
    CWinApp application; // whose profile the movie's settings are read from
    application.WriteProfileString(L"Settings\\Capture", L"RecordCodec", L"Uncompressed");
    return RecordCine() && RecordMovie() ? 0 : 1;
}
