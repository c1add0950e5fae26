// A module with a single function, so that it has an export table.
extern "C" __declspec(dllexport) int LoadedModuleAnswer()
{
    return 42;
}
