// A library of nothing: files for the tests of the version reader are made of it.
extern "C" int __stdcall BlankMain(void*, unsigned long, void*)
{
    return 1;
}
