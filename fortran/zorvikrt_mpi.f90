! REAL*16 and COMPLEX*32 between the ranks of an MPI program; a module to be compiled with the program.
!
!   use zorvikrt_mpi
!   call zorvik_mpi_create
!   call mpi_allreduce(mine, largest, 1, zorvik_mpi_real16, zorvik_mpi_max, mpi_comm_world, ierror)
!   call mpi_allreduce(here, first, 1, zorvik_mpi_located, zorvik_mpi_maxloc, mpi_comm_world, ierror)
!   call zorvik_mpi_sum(blocks, total, mpi_comm_world)
!   call zorvik_mpi_free
!
! MPI joins sums and products in an order of its own, which changes with the number of ranks;
! zorvik_mpi_sum does not.

module zorvikrt_mpi
  use, intrinsic :: iso_c_binding, only: c_int64_t
  use mpi
  use zorvikrt
  use zorvikrt_arrays, only: zorvik_sum
  implicit none
  private

  public :: zorvik_mpi_create, zorvik_mpi_free, zorvik_mpi_sum
  integer, public, protected :: zorvik_mpi_real16 = mpi_datatype_null, zorvik_mpi_complex32 = mpi_datatype_null
  integer, public, protected :: zorvik_mpi_add = mpi_op_null, zorvik_mpi_multiply = mpi_op_null
  integer, public, protected :: zorvik_mpi_max = mpi_op_null, zorvik_mpi_min = mpi_op_null
  integer, public, protected :: zorvik_mpi_complex_add = mpi_op_null, zorvik_mpi_complex_multiply = mpi_op_null

  !> A value and where it comes from, for maxloc and minloc: of equal extremes the one of smallest location.
  type, public, bind(c) :: zorvik_located
    type(real16) :: value
    integer(c_int64_t) :: location
  end type
  integer, public, protected :: zorvik_mpi_located = mpi_datatype_null
  integer, public, protected :: zorvik_mpi_maxloc = mpi_op_null, zorvik_mpi_minloc = mpi_op_null

contains

  !> Makes the types and operations; after mpi_init.
  subroutine zorvik_mpi_create
    integer :: ierror
    call mpi_type_contiguous(2, mpi_double_precision, zorvik_mpi_real16, ierror)
    call mpi_type_commit(zorvik_mpi_real16, ierror)
    call mpi_type_contiguous(4, mpi_double_precision, zorvik_mpi_complex32, ierror)
    call mpi_type_commit(zorvik_mpi_complex32, ierror)
    call mpi_type_create_struct(2, [2, 1], int([0, 16], mpi_address_kind), [mpi_double_precision, mpi_integer8], &
        zorvik_mpi_located, ierror)
    call mpi_type_commit(zorvik_mpi_located, ierror)
    call mpi_op_create(add, .true., zorvik_mpi_add, ierror)
    call mpi_op_create(multiply, .false., zorvik_mpi_multiply, ierror)
    call mpi_op_create(larger, .true., zorvik_mpi_max, ierror)
    call mpi_op_create(smaller, .true., zorvik_mpi_min, ierror)
    call mpi_op_create(complex_add, .true., zorvik_mpi_complex_add, ierror)
    call mpi_op_create(complex_multiply, .false., zorvik_mpi_complex_multiply, ierror)
    call mpi_op_create(located_max, .true., zorvik_mpi_maxloc, ierror)
    call mpi_op_create(located_min, .true., zorvik_mpi_minloc, ierror)
  end subroutine

  subroutine zorvik_mpi_free
    integer :: ierror
    call mpi_type_free(zorvik_mpi_real16, ierror)
    call mpi_type_free(zorvik_mpi_complex32, ierror)
    call mpi_type_free(zorvik_mpi_located, ierror)
    call mpi_op_free(zorvik_mpi_add, ierror)
    call mpi_op_free(zorvik_mpi_multiply, ierror)
    call mpi_op_free(zorvik_mpi_max, ierror)
    call mpi_op_free(zorvik_mpi_min, ierror)
    call mpi_op_free(zorvik_mpi_complex_add, ierror)
    call mpi_op_free(zorvik_mpi_complex_multiply, ierror)
    call mpi_op_free(zorvik_mpi_maxloc, ierror)
    call mpi_op_free(zorvik_mpi_minloc, ierror)
  end subroutine

  !> The sum of the blocks of all ranks, in the order of the ranks, by zorvik_sum on every rank: the same
  !> bits for any number of ranks over which the program deals out the same blocks in the same order.
  subroutine zorvik_mpi_sum(blocks, total, communicator)
    type(real16), intent(in), contiguous :: blocks(:)
    type(real16), intent(out) :: total
    integer, intent(in) :: communicator
    type(real16), allocatable :: all_blocks(:)
    integer, allocatable :: counts(:), places(:)
    integer :: ranks, i, ierror
    call mpi_comm_size(communicator, ranks, ierror)
    allocate (counts(ranks), places(ranks))
    call mpi_allgather([size(blocks)], 1, mpi_integer, counts, 1, mpi_integer, communicator, ierror)
    places = [(sum(counts(:i - 1)), i = 1, ranks)]
    allocate (all_blocks(sum(counts)))
    call gather(blocks, size(blocks), all_blocks, counts, places, communicator)
    total = zorvik_sum(all_blocks)
  end subroutine

  subroutine gather(blocks, count, all_blocks, counts, places, communicator)
    integer, intent(in) :: count, counts(*), places(*), communicator
    type(real16), intent(in) :: blocks(*)
    type(real16), intent(inout) :: all_blocks(*)
    interface
      subroutine mpi_allgatherv(sent, n, sent_type, got, counts, places, got_type, communicator, ierror)
        import
        type(real16), intent(in) :: sent(*)
        type(real16), intent(inout) :: got(*)
        integer, intent(in) :: n, sent_type, counts(*), places(*), got_type, communicator
        integer, intent(out) :: ierror
      end subroutine
    end interface
    integer :: ierror
    call mpi_allgatherv(blocks, count, zorvik_mpi_real16, all_blocks, counts, places, zorvik_mpi_real16, communicator, ierror)
  end subroutine

  subroutine add(in, inout, count, datatype)
    integer, intent(in) :: count, datatype
    type(real16), intent(in) :: in(count)
    type(real16), intent(inout) :: inout(count)
    inout = in + inout
  end subroutine
  subroutine multiply(in, inout, count, datatype)
    integer, intent(in) :: count, datatype
    type(real16), intent(in) :: in(count)
    type(real16), intent(inout) :: inout(count)
    inout = in * inout
  end subroutine
  subroutine larger(in, inout, count, datatype)
    integer, intent(in) :: count, datatype
    type(real16), intent(in) :: in(count)
    type(real16), intent(inout) :: inout(count)
    where (in > inout) inout = in
  end subroutine
  subroutine smaller(in, inout, count, datatype)
    integer, intent(in) :: count, datatype
    type(real16), intent(in) :: in(count)
    type(real16), intent(inout) :: inout(count)
    where (in < inout) inout = in
  end subroutine
  subroutine complex_add(in, inout, count, datatype)
    integer, intent(in) :: count, datatype
    type(complex32), intent(in) :: in(count)
    type(complex32), intent(inout) :: inout(count)
    inout = in + inout
  end subroutine
  subroutine complex_multiply(in, inout, count, datatype)
    integer, intent(in) :: count, datatype
    type(complex32), intent(in) :: in(count)
    type(complex32), intent(inout) :: inout(count)
    inout = in * inout
  end subroutine
  subroutine located_max(in, inout, count, datatype)
    integer, intent(in) :: count, datatype
    type(zorvik_located), intent(in) :: in(count)
    type(zorvik_located), intent(inout) :: inout(count)
    where (in%value > inout%value .or. (in%value == inout%value .and. in%location < inout%location)) inout = in
  end subroutine
  subroutine located_min(in, inout, count, datatype)
    integer, intent(in) :: count, datatype
    type(zorvik_located), intent(in) :: in(count)
    type(zorvik_located), intent(inout) :: inout(count)
    where (in%value < inout%value .or. (in%value == inout%value .and. in%location < inout%location)) inout = in
  end subroutine

end module zorvikrt_mpi
