! Every operation of the module over values that do not depend on the number of ranks, printed by rank 0.

program ranks_test
  use mpi
  use zorvikrt
  use zorvikrt_mpi
  implicit none
  integer, parameter :: values = 24
  type(zorvik_located) :: here, high, low, all_high, all_low
  type(real16) :: total, powers, largest, smallest, all_of(4)
  type(complex32) :: steps, turns, all_steps, all_turns
  integer :: rank, ranks, first, last, i, ierror
  logical :: right

  call mpi_init(ierror)
  call mpi_comm_rank(mpi_comm_world, rank, ierror)
  call mpi_comm_size(mpi_comm_world, ranks, ierror)
  call zorvik_mpi_create
  first = values * rank / ranks
  last = values * (rank + 1) / ranks - 1
  total = 0
  powers = 1
  steps = 0
  turns = 1
  do i = first, last
    here = zorvik_located(value(i), i)
    if (i == first) high = here
    if (i == first) low = here
    if (here%value > high%value) high = here
    if (here%value < low%value) low = here
    total = total + i
    powers = powers * merge(-2, 2, mod(i, 2) == 1)
    steps = steps + complex32(real16(i), -1d0)
    turns = turns * complex32(0d0, 2d0)
  end do
  call mpi_reduce(high, all_high, 1, zorvik_mpi_located, zorvik_mpi_maxloc, 0, mpi_comm_world, ierror)
  call mpi_reduce(low, all_low, 1, zorvik_mpi_located, zorvik_mpi_minloc, 0, mpi_comm_world, ierror)
  call mpi_reduce(total, all_of(1), 1, zorvik_mpi_real16, zorvik_mpi_add, 0, mpi_comm_world, ierror)
  call mpi_reduce(powers, all_of(2), 1, zorvik_mpi_real16, zorvik_mpi_multiply, 0, mpi_comm_world, ierror)
  largest = high%value
  smallest = low%value
  call mpi_reduce(largest, all_of(3), 1, zorvik_mpi_real16, zorvik_mpi_max, 0, mpi_comm_world, ierror)
  call mpi_reduce(smallest, all_of(4), 1, zorvik_mpi_real16, zorvik_mpi_min, 0, mpi_comm_world, ierror)
  call mpi_reduce(steps, all_steps, 1, zorvik_mpi_complex32, zorvik_mpi_complex_add, 0, mpi_comm_world, ierror)
  call mpi_reduce(turns, all_turns, 1, zorvik_mpi_complex32, zorvik_mpi_complex_multiply, 0, mpi_comm_world, ierror)
  if (rank == 0) then
    print '(a,2(1x,i0))', 'locations', all_high%location, all_low%location
    print '(8(1x,z16.16))', all_of%parts%hi, all_of%parts%lo
    right = all_high%location == 5 .and. all_low%location == 6 .and. all_of(3) == value(5) .and. all_of(4) == value(6) &
        .and. all_high%value == value(5) .and. all_low%value == value(6) &
        .and. all_of(1) == 276 .and. all_of(2) == 2d0**24 .and. all_steps == complex32(276d0, -24d0) &
        .and. all_turns == complex32(2d0**24, 0d0)
    print '(a)', merge('as it should be', 'wrong          ', right)
  end if
  call zorvik_mpi_free
  call mpi_finalize(ierror)

contains

  !> Signs and magnitudes of every kind; equal extremes twice, beside others that differ in the low part alone.
  type(real16) function value(i)
    integer, intent(in) :: i
    value = real16(mod(i * 37, 19) - 9) * 0.7d0
    if (i == 2 .or. i == 5 .or. i == 17) value = real16(100d0, merge(2d0**(-51), 2d0**(-50), i == 2))
    if (i == 3 .or. i == 6 .or. i == 20) value = -real16(100d0, merge(2d0**(-51), 2d0**(-50), i == 3))
  end function
end program ranks_test
