extern "C" __declspec(dllexport) char* AllocateInLateModule()
{
    return new char[64];
}

extern "C" __declspec(dllexport) void FreeInLateModule(char* block)
{
    delete[] block;
}
