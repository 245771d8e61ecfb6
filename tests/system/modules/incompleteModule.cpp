// A library that cannot be loaded: nobody defines what it calls.

extern "C" void kelvobaseTestDefinedNowhere();

extern "C" void incompleteCall()
{
    kelvobaseTestDefinedNowhere();
}
