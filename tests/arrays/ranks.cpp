// Every operation of zorvikrt/mpi.h over values that do not depend on the number of ranks, printed
// by rank 0 to the last bit.

#include <zorvikrt/mpi.h>

#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <vector>

namespace {

constexpr int values = 24;

/// Value i: signs, magnitudes and low parts of every kind, two of them equal extremes.
zorvikrt_quad value(int i) {
  zorvikrt_quad q;
  __zorvik_qprod(&q, (i * 37 % 19 - 9) * 0.7, 1.0 + i * 0x1p-40);
  if (i == 5 || i == 17) q = {100, 0x1p-50};
  if (i == 6 || i == 20) q = {-100, -0x1p-50};
  return q;
}

template <class T>
void show(const char* name, const T& result) {
  std::uint64_t words[sizeof(T) / 8];
  std::memcpy(words, &result, sizeof result);
  std::printf("%s", name);
  for (const std::uint64_t word : words) std::printf(" %016" PRIX64, word);
  std::printf("\n");
}

}  // namespace

int main(int count, char** words) {
  MPI_Init(&count, &words);
  int rank, ranks;
  MPI_Comm_rank(MPI_COMM_WORLD, &rank);
  MPI_Comm_size(MPI_COMM_WORLD, &ranks);
  zorvikrt_mpi types;
  if (zorvikrt_mpi_create(&types) != MPI_SUCCESS) return 1;
  const int first = values * rank / ranks, last = values * (rank + 1) / ranks;
  std::vector<zorvikrt_quad> mine;
  for (int i = first; i < last; ++i) mine.push_back(value(i));
  zorvikrt_quad sum;
  if (zorvikrt_mpi_sum(&types, mine.data(), last - first, &sum, MPI_COMM_WORLD) != MPI_SUCCESS)
    return 1;

  // The share of a rank by the same operations, then over the ranks: exact sums and products.
  zorvikrt_located high = {value(first), first}, low = high;
  zorvikrt_quad total = {0, 0}, product = {1, 0}, larger = value(first), smaller = larger;
  zorvikrt_cquad turns = {{1, 0}, {0, 0}}, steps = {};
  const zorvikrt_cquad quarter = {{0, 0}, {2, 0}};
  for (int i = first; i < last; ++i) {
    const zorvikrt_located here = {value(i), i};
    const zorvikrt_quad whole = {static_cast<double>(i), 0}, two = {i % 2 != 0 ? -2.0 : 2.0, 0};
    const zorvikrt_cquad step = {whole, two};
    if (__zorvik_qcompare(here.value, high.value) > 0) high = here;
    if (__zorvik_qcompare(here.value, low.value) < 0) low = here;
    __zorvik_qadd(&total, total, whole);
    __zorvik_qmul(&product, product, two);
    __zorvik_cqmul(&turns, turns, quarter);
    __zorvik_qadd(&steps.re, steps.re, step.re);
    __zorvik_qadd(&steps.im, steps.im, step.im);
  }
  larger = high.value;
  smaller = low.value;
  zorvikrt_located all_high, all_low;
  zorvikrt_quad all_total, all_product, all_larger, all_smaller;
  zorvikrt_cquad all_turns, all_steps;
  const auto reduce = [](const void* from, void* to, MPI_Datatype type, MPI_Op operation) {
    MPI_Reduce(from, to, 1, type, operation, 0, MPI_COMM_WORLD);
  };
  reduce(&high, &all_high, types.located, types.maxloc);
  reduce(&low, &all_low, types.located, types.minloc);
  reduce(&total, &all_total, types.real16, types.sum);
  reduce(&product, &all_product, types.real16, types.product);
  reduce(&larger, &all_larger, types.real16, types.max);
  reduce(&smaller, &all_smaller, types.real16, types.min);
  reduce(&turns, &all_turns, types.complex32, types.complex_product);
  reduce(&steps, &all_steps, types.complex32, types.complex_sum);
  if (rank == 0) {
    show("blocks", sum);
    show("maxloc", all_high);
    show("minloc", all_low);
    show("sum", all_total);
    show("product", all_product);
    show("max", all_larger);
    show("min", all_smaller);
    show("turns", all_turns);
    show("steps", all_steps);
    std::printf("%s\n", all_high.location == 5 && all_low.location == 6 && all_total.hi == 276 &&
                                all_product.hi == 0x1p24 && all_turns.re.hi == 0x1p24 &&
                                all_steps.re.hi == 276 && all_steps.im.hi == 0
                            ? "as it should be"
                            : "wrong");
  }
  zorvikrt_mpi_free(&types);
  MPI_Finalize();
  return 0;
}
