// Uses a little of everything that crosses the boundary: exported functions, data members, strings,
// and a class that the library calls back.
#include <Utils_Statics/Utils_Statics.h>

#include <cstdio>

namespace {

class Listener : public IStateChangeConsumer
{
public:
    long heard = 0;

private:
    void OnStateChange(StateChangeType, unsigned int, long param2) override { heard += param2; }
};

bool Check(bool held, const char* what)
{
    std::printf("  %-8s%s\n", held ? "ok" : "FAILED", what);
    return held;
}

} // namespace

int main()
{
    bool held = Check(utilsExam::MapConsoleType(L"Tavren") == EConsoleType(4), "the console map");
    utilsExam::DevMode = true;
    held &= Check(utilsExam::DevMode, "a public flag");

    Listener listener;
    utilsExam::StateChangeSignal(StateChangeType(1), 0, 42);
    held &= Check(listener.heard == 42, "a state change reaches a consumer");

    CStringArray words;
    StringParse::GetAllWords(L"a,b,c", words, L',');
    held &= Check(words.GetSize() == 3 && words[2] == L"c", "texts and arrays");

    double identity[4] = {};
    MAT_MakeIdentity(identity, 2);
    held &= Check(identity[0] == 1 && identity[1] == 0 && identity[3] == 1, "the matrix routines");

    std::puts(held ? "client: all held" : "client: FAILED");
    return held ? 0 : 1;
}
