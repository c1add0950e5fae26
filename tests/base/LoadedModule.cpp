// A module without anything in it but one function, so that it has an export table.
extern "C" __declspec(dllexport) int LoadedModuleAnswer()
{
    return 42;
}
