#include <cstddef>
#include <cstdlib>
#include <new>

#include "procedures/ProceduresTest.h"
#include "procedures/TTests.h"

namespace {

// Calls of the global operator new in this program.
std::size_t g_allocations = 0;

}  // namespace

[[gnu::noinline]] void* operator new(std::size_t bytes) {
  ++g_allocations;
  if (void* block = std::malloc(bytes == 0 ? 1 : bytes)) {
    return block;
  }
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t /*bytes*/) noexcept {
  std::free(block);
}

namespace poweranalysis {
namespace {

class AllocationsTest : public ProceduresTest {};

TEST_F(AllocationsTest, AreCounted) {
  const std::size_t before = g_allocations;
  const std::vector<int> block(100);
  EXPECT_GT(g_allocations, before);
  EXPECT_EQ(block.size(), 100U);
}

TEST_F(AllocationsTest, DoNotHappenInsideASearch) {
  TSizeRequest request{.es = .2, .alpha = .05, .powerGoal = .8, .sizeLimit = 150000};
  CriticalTCache criticals;
  const std::size_t before = g_allocations;
  const SearchResult one = OneGroupRequiredN(request, criticals);
  const SearchResult both = TwoGroupsRequiredN(request, NToVaryBoth, 0, criticals);
  request.es = .5;
  const SearchResult fixed = TwoGroupsRequiredN(request, NToVaryN1, 40, criticals);
  EXPECT_EQ(g_allocations, before);
  EXPECT_EQ(one.status, SearchOk);
  EXPECT_EQ(both.status, SearchOk);
  EXPECT_EQ(fixed.status, SearchOk);
}

}  // namespace
}  // namespace poweranalysis
