// A library that needs another one.
extern "C" __declspec(dllimport) int NeededValue();
extern "C" __declspec(dllexport) int CTDENRVT1_init() {
  return NeededValue();
}
