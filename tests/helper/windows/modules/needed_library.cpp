// A library that another one needs.
extern "C" __declspec(dllexport) int NeededValue() {
  return 42;
}
