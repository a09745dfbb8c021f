/** REAL*16 and COMPLEX*32 between the ranks of an MPI program; in C and C++, header only.
 *
 *      zorvikrt_mpi types;
 *      zorvikrt_mpi_create(&types);
 *      MPI_Allreduce(&mine, &largest, 1, types.real16, types.max, MPI_COMM_WORLD);
 *      zorvikrt_mpi_free(&types);
 *
 *  The operations are those of the library, in the thread that calls MPI. MPI joins sums and
 * products in an order of its own, which changes with the number of ranks: zorvikrt_mpi_sum does
 * not.
 */
#ifndef ZORVIKRT_MPI_H
#define ZORVIKRT_MPI_H

#include <mpi.h>
#include <stdlib.h>
#include <zorvikrt/arrays.h>

#ifdef __cplusplus
extern "C" {
#endif

/** A value and where it comes from, for minloc and maxloc. */
typedef struct zorvikrt_located {
  zorvikrt_quad value;
  int64_t location;
} zorvikrt_located;

typedef struct zorvikrt_mpi {
  MPI_Datatype real16, complex32, located;
  /** Of real16. */
  MPI_Op sum, product, max, min;
  /** Of complex32. */
  MPI_Op complex_sum, complex_product;
  /** Of located: the extreme value, of equal ones the one of smallest location. */
  MPI_Op minloc, maxloc;
} zorvikrt_mpi;

#define ZORVIKRT_MPI_OPERATION(name, type, body)                                  \
  static void name(void* in_, void* inout_, int* count, MPI_Datatype* datatype) { \
    int i;                                                                        \
    (void)datatype;                                                               \
    for (i = 0; i < *count; ++i) {                                                \
      const type in = ((const type*)in_)[i];                                      \
      type* const inout = (type*)inout_ + i;                                      \
      body                                                                        \
    }                                                                             \
  }
ZORVIKRT_MPI_OPERATION(zorvikrt_mpi_add, zorvikrt_quad, __zorvik_qadd(inout, in, *inout);)
ZORVIKRT_MPI_OPERATION(zorvikrt_mpi_multiply, zorvikrt_quad, __zorvik_qmul(inout, in, *inout);)
ZORVIKRT_MPI_OPERATION(zorvikrt_mpi_larger, zorvikrt_quad,
                       if (__zorvik_qcompare(in, *inout) > 0) * inout = in;)
ZORVIKRT_MPI_OPERATION(zorvikrt_mpi_smaller, zorvikrt_quad,
                       if (__zorvik_qcompare(in, *inout) < 0) * inout = in;)
ZORVIKRT_MPI_OPERATION(zorvikrt_mpi_complex_add, zorvikrt_cquad,
                       __zorvik_qadd(&inout->re, in.re, inout->re);
                       __zorvik_qadd(&inout->im, in.im, inout->im);)
ZORVIKRT_MPI_OPERATION(zorvikrt_mpi_complex_multiply, zorvikrt_cquad,
                       __zorvik_cqmul(inout, in, *inout);)
ZORVIKRT_MPI_OPERATION(zorvikrt_mpi_located_max, zorvikrt_located,
                       const int order = __zorvik_qcompare(in.value, inout->value);
                       if (order > 0 ||
                           (order == 0 && in.location < inout->location)) * inout = in;)
ZORVIKRT_MPI_OPERATION(zorvikrt_mpi_located_min, zorvikrt_located,
                       const int order = __zorvik_qcompare(in.value, inout->value);
                       if (order < 0 ||
                           (order == 0 && in.location < inout->location)) * inout = in;)
#undef ZORVIKRT_MPI_OPERATION

/** Makes the types and operations; after MPI_Init. Returns MPI_SUCCESS or MPI's error. */
static inline int zorvikrt_mpi_create(zorvikrt_mpi* types) {
  int lengths[] = {2, 1};
  MPI_Aint places[] = {0, offsetof(zorvikrt_located, location)};
  MPI_Datatype parts[] = {MPI_DOUBLE, MPI_INT64_T}, packed;
  int error = MPI_Type_contiguous(2, MPI_DOUBLE, &types->real16);
  if (error == MPI_SUCCESS) error = MPI_Type_commit(&types->real16);
  if (error == MPI_SUCCESS) error = MPI_Type_contiguous(4, MPI_DOUBLE, &types->complex32);
  if (error == MPI_SUCCESS) error = MPI_Type_commit(&types->complex32);
  if (error == MPI_SUCCESS) error = MPI_Type_create_struct(2, lengths, places, parts, &packed);
  if (error == MPI_SUCCESS)
    error = MPI_Type_create_resized(packed, 0, sizeof(zorvikrt_located), &types->located);
  if (error == MPI_SUCCESS) error = MPI_Type_commit(&types->located);
  if (error == MPI_SUCCESS) error = MPI_Type_free(&packed);
  if (error == MPI_SUCCESS) error = MPI_Op_create(zorvikrt_mpi_add, 1, &types->sum);
  /* The last bits of a product depend on the order of its factors. */
  if (error == MPI_SUCCESS) error = MPI_Op_create(zorvikrt_mpi_multiply, 0, &types->product);
  if (error == MPI_SUCCESS) error = MPI_Op_create(zorvikrt_mpi_larger, 1, &types->max);
  if (error == MPI_SUCCESS) error = MPI_Op_create(zorvikrt_mpi_smaller, 1, &types->min);
  if (error == MPI_SUCCESS) error = MPI_Op_create(zorvikrt_mpi_complex_add, 1, &types->complex_sum);
  if (error == MPI_SUCCESS)
    error = MPI_Op_create(zorvikrt_mpi_complex_multiply, 0, &types->complex_product);
  if (error == MPI_SUCCESS) error = MPI_Op_create(zorvikrt_mpi_located_max, 1, &types->maxloc);
  if (error == MPI_SUCCESS) error = MPI_Op_create(zorvikrt_mpi_located_min, 1, &types->minloc);
  return error;
}

static inline void zorvikrt_mpi_free(zorvikrt_mpi* types) {
  MPI_Datatype* const datatypes[] = {&types->real16, &types->complex32, &types->located};
  MPI_Op* const operations[] = {
      &types->sum,    &types->product,         &types->max,   &types->min, &types->complex_sum,
      &types->minloc, &types->complex_product, &types->maxloc};
  size_t i;
  for (i = 0; i < sizeof datatypes / sizeof *datatypes; ++i) MPI_Type_free(datatypes[i]);
  for (i = 0; i < sizeof operations / sizeof *operations; ++i) MPI_Op_free(operations[i]);
}

/** The sum of all blocks of all ranks, with the same bits for any number of ranks: the blocks in
 * the order of the ranks, and on each rank in the order given, are summed by zorvikrt_qsum on every
 * rank. So a program cuts its work into blocks whose number and order do not depend on the ranks,
 * sums each block by itself, and hands over those that it has. All ranks call it; returns
 * MPI_SUCCESS, MPI's error, or MPI_ERR_NO_MEM. */
static inline int zorvikrt_mpi_sum(const zorvikrt_mpi* types, const zorvikrt_quad* blocks,
                                   int count, zorvikrt_quad* result, MPI_Comm communicator) {
  int ranks, i, all = 0, error = MPI_Comm_size(communicator, &ranks);
  int *counts, *places;
  zorvikrt_quad* gathered;
  if (error != MPI_SUCCESS) return error;
  counts = (int*)malloc(2 * sizeof(int) * (size_t)ranks);
  if (counts == NULL) return MPI_ERR_NO_MEM;
  places = counts + ranks;
  error = MPI_Allgather(&count, 1, MPI_INT, counts, 1, MPI_INT, communicator);
  for (i = 0; error == MPI_SUCCESS && i < ranks; ++i) {
    places[i] = all;
    all += counts[i];
  }
  gathered = (zorvikrt_quad*)malloc(sizeof(zorvikrt_quad) * (size_t)(all + 1));
  if (gathered == NULL) error = MPI_ERR_NO_MEM;
  if (error == MPI_SUCCESS)
    error = MPI_Allgatherv((void*)blocks, count, types->real16, gathered, counts, places,
                           types->real16, communicator);
  if (error == MPI_SUCCESS) zorvikrt_qsum(all, gathered, 1, result);
  free(gathered);
  free(counts);
  return error;
}

#ifdef __cplusplus
}
#endif

#endif
