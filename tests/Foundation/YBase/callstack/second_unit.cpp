// A second compilation unit of a module, whose lines are looked up later than those of the first.

namespace {

volatile int gsCalls = 0;

}  // namespace

extern "C" void RunInSecondUnit(void (*work)()) {
  work();
  gsCalls = gsCalls + 1;
}
