// An empty library. The tests of the version reader make their files of it.
extern "C" int __stdcall BlankMain(void*, unsigned long, void*)
{
    return 1;
}
