! The integral of exp(-x**2) over the whole line, the root of pi, on any number of MPI ranks with the same
! bits: the nodes fall into 96 blocks, whatever the ranks, and each rank sums its share of the blocks.
!
!   mpirun -n 4 gauss_mpi

program gauss_mpi
  use mpi
  use zorvikrt
  use zorvikrt_arrays
  use zorvikrt_mpi
  implicit none
  integer, parameter :: blocks = 96, nodes = 200
  type(real16), allocatable :: sums(:)
  type(real16) :: terms(nodes), x, total, largest, mine
  real(8), parameter :: step = 2d0**(-10)
  integer :: rank, ranks, first, last, block, i, ierror

  call mpi_init(ierror)
  call mpi_comm_rank(mpi_comm_world, rank, ierror)
  call mpi_comm_size(mpi_comm_world, ranks, ierror)
  call zorvik_mpi_create
  first = blocks * rank / ranks
  last = blocks * (rank + 1) / ranks - 1
  allocate (sums(first:last))
  do block = first, last
    do i = 1, nodes
      x = (block * nodes + i - blocks * nodes / 2) * step
      terms(i) = exp(-(x * x)) * step
    end do
    sums(block) = zorvik_sum(terms)
  end do
  call zorvik_mpi_sum(sums, total, mpi_comm_world)
  mine = sums(first)
  do block = first, last
    if (sums(block) > mine) mine = sums(block)
  end do
  call mpi_reduce(mine, largest, 1, zorvik_mpi_real16, zorvik_mpi_max, 0, mpi_comm_world, ierror)
  if (rank == 0) then
    print '(a,DT"F"(40,32))', 'integral     ', total
    print '(a,DT"F"(40,32))', 'root of pi   ', sqrt(4 * atan(real16('1')))
    print '(a,DT"F"(40,32))', 'largest block', largest
    print '(a,2(1x,z16.16))', 'image        ', total%parts%hi, total%parts%lo
  end if
  call zorvik_mpi_free
  call mpi_finalize(ierror)
end program gauss_mpi
