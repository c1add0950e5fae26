extern "C" __declspec(dllexport) char* allocateInLateModule()
{
    return new char[64];
}

extern "C" __declspec(dllexport) void freeInLateModule(char* block)
{
    delete[] block;
}
