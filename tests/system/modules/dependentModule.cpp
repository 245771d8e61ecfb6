// A library that cannot be loaded where absentLibrary is not on the loader's path.

extern "C" void kelvobaseTestAbsent();

extern "C" void dependentCall()
{
    kelvobaseTestAbsent();
}
