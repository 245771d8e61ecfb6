// What dependentModule needs and the loader does not find.

extern "C" void kelvobaseTestAbsent();

void kelvobaseTestAbsent() {}
