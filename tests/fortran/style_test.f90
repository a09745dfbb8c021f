! REAL*16 where programs in REAL*8 have their arrays, dummies, constants and storage: each section is code as it is
! commonly written, with the type changed. Prints one line for each failure and a count at the end.
module shapes
  use zorvikrt
  implicit none
  type :: particle
    integer :: id = 0
    type(real16) :: mass, position(3)
    type(real16), allocatable :: trail(:)
  end type particle
  type(real16), parameter :: half = real16(real16_parts(0.5d0, 0d0))
  type(real16), parameter :: weights(3) = [half, half, real16(real16_parts(1d0, 1d-20))]
contains
  ! Work arrays of run-time size, beside input and output.
  subroutine smooth(a, n)
    integer, intent(in) :: n
    type(real16), intent(inout) :: a(n)
    type(real16) :: work(n), table(2, 0:n), copy(size(a))
    character(80) :: line
    integer :: i
    work = a
    copy = work(n:1:-1)
    table = 0
    do i = 1, n
      table(1, i) = work(i) + copy(i)
    end do
    write (line, '(DT"F"(3))') table(1, n)
    read (line, *) a(n)
    a(1) = table(1, 1)
  end subroutine smooth

  function prefix(a) result(s)
    type(real16), intent(in) :: a(:)
    type(real16) :: s(size(a))
    integer :: i
    s(1) = a(1)
    do i = 2, size(a)
      s(i) = s(i - 1) + a(i)
    end do
  end function prefix

  subroutine enlarge(a, factor)
    type(real16), allocatable, intent(inout) :: a(:)
    type(real16), intent(out) :: factor
    type(real16), allocatable :: grown(:)
    allocate (grown(2 * size(a)), source=real16(7))
    grown(:size(a)) = a
    call move_alloc(grown, a)
    factor = 2
  end subroutine enlarge

  ! Each level keeps its own locals.
  recursive function fibonacci(n) result(f)
    integer, intent(in) :: n
    type(real16) :: f, a, b
    if (n < 2) then
      f = n
    else
      a = fibonacci(n - 1)
      b = fibonacci(n - 2)
      f = a + b
    end if
  end function fibonacci

  ! Scalar locals of a procedure that threads call at the same time.
  function stepped(start, count) result(b)
    integer, intent(in) :: start, count
    type(real16) :: a, b
    integer :: k
    b = start
    do k = 1, count
      a = b
      b = a + 1
    end do
  end function stepped
end module shapes

! FORTRAN 77: COMMON, DATA, IMPLICIT, adjustable and assumed-size dummies.
subroutine fill(x, ldx, n)
  use zorvikrt
  implicit type(real16) (a-h, o-z)
  dimension x(ldx, *), c(3)
  common /scales/ alpha, beta(2)
  save c
  data c /real16(real16_parts(1d0, 0d0)), 2*real16(real16_parts(0.25d0, 0d0))/
  do 10 j = 1, n
    do 20 i = 1, ldx
      x(i, j) = alpha * c(i) + beta(2) * j
20  continue
10 continue
end subroutine fill

program style_test
  use checks
  use shapes
  implicit none
  type(real16) :: alpha, beta(2)
  common /scales/ alpha, beta
  call arrays
  call storage
  call threads
  call report(23)

contains

  subroutine arrays
    type(real16) :: a(4), m(2, 3), f, column(2)
    type(real16), allocatable :: grown(:), copy(:, :)
    type(particle) :: p, q
    integer :: i
    a = [(real16(i), i=1, 4)]
    check_shapes: block
      type(real16) :: inner(size(a) + 1)
      inner = [a, real16(5)]
      call check(inner(5) == 5 .and. size(inner) == 5, 'an automatic array of a block')
    end block check_shapes
    call smooth(a, 4)
    call check(all(a == [5, 2, 3, 5]), 'automatic arrays of both ranks, beside input and output')
    call check(all(prefix(a(1:4:2)) == [5, 8]), 'an array result, a section as assumed shape')
    grown = a
    call enlarge(grown, f)
    call check(size(grown) == 8 .and. grown(4) == 5 .and. grown(8) == 7 .and. f == 2, 'allocatable dummies, source=, move_alloc')
    m = reshape([(real16(i), i=1, 6)], [2, 3])
    call check(m(2, 3) == 6 .and. all(m(:, 2) == [3, 4]), 'reshape')
    allocate (copy, source=transpose(m))
    call check(all(shape(copy) == [3, 2]) .and. copy(3, 2) == 6, 'allocate from an expression, transpose')
    call check(all(merge(m(1, :), real16(0), m(2, :) > 3) == [0, 3, 5]), 'merge')
    call check(all(pack(m, m > 2.5d0) == [3, 4, 5, 6]) .and. all(cshift(a, 1) == [2, 3, 5, 5]), 'pack, cshift')
    call check(all(spread(a(1:2), 2, 2) == reshape([5, 2, 5, 2], [2, 2])), 'spread')
    m(:, 1:3:2) = sqrt(m(:, 1:3:2)**2)
    where (m > 4) m = -m
    call check(all(m == reshape([1, 2, 3, 4, -5, -6], [2, 3])), 'elemental calls on sections, where')
    forall (i=1:2) column(i) = m(i, 2) * i
    call check(all(column == [3, 8]) .and. any(m < 0) .and. count(m > 0) == 4, 'forall, any, count')
    p%mass = 3
    p%position = [real16(1), real16('0.1'), 2 * half]
    p%trail = p%position
    q = p
    q%trail(2) = q%trail(2) * 10
    call check(q%mass == 3 .and. abs(q%trail(2) - 1) < 1d-31 .and. p%trail(2) < 1, 'derived types that hold REAL*16')
    call check(sum(weights) == real16(2d0, 1d-20) .and. weights(3) > 1, 'constants')
    call check(fibonacci(15) == 610, 'recursion')
  end subroutine arrays

  subroutine storage
    type(real16), target :: x, many(5)
    type(real16), pointer :: y, section(:)
    type(real16) :: table(3, 2)
    integer :: unit, i
    type(real16), save :: kept = real16(real16_parts(1d0, 2d-20))
    y => x
    y = real16('1e-5')
    many = 2
    section => many(1:5:2)
    section = 3
    call check(x == real16('1e-5') .and. all(many == [3, 2, 3, 2, 3]), 'pointers and targets')
    nullify (section)
    allocate (section(3), source=x)
    call check(all(section == y), 'an allocated pointer')
    deallocate (section)
    kept = kept + 1
    call check(kept == real16(2d0, 2d-20), 'an initialised variable')
    alpha = 2
    beta = [real16(0), real16(10)]
    call fill(table, 3, 2)
    call check(table(1, 1) == 12 .and. table(3, 2) == 20.5d0, 'COMMON, DATA, IMPLICIT')
    open (newunit=unit, status='scratch', form='unformatted')
    write (unit) x, table
    rewind unit
    table = 0
    read (unit) many(1), table
    call check(many(1) == x .and. table(3, 2) == 20.5d0, 'unformatted records')
    close (unit)
    open (newunit=unit, status='scratch')
    write (unit, *) (real16(i) / 3, i=1, 3), [x, x]
    rewind unit
    read (unit, *) (many(i), i=1, 4)
    call check(all(abs(many(:3) * 3 - [1, 2, 3]) < 1d-31) .and. many(4) == x, 'lists of items, implied loops, expressions')
    close (unit)
  end subroutine storage

  subroutine threads
    type(real16) :: total, part, largest
    logical :: right(200)
    character(40) :: lines(200), shortest(200)
    integer :: i
    !$omp parallel do
    do i = 1, 200
      right(i) = stepped(i, 2000) == i + 2000
      write (lines(i), '(DT"F"(20,2))') real16(i) / 4
      shortest(i) = to_text(scale(real16(1), mod(i, 7))) // '|'
    end do
    call check(all(right), 'locals of a procedure that threads share')
    right = [(index(lines(i), trim(adjustl(expected(i)))) > 0, i=1, 200)]
    do i = 1, 200
      right(i) = right(i) .and. shortest(i) == to_text(scale(real16(1), mod(i, 7))) // '|'
    end do
    call check(all(right), 'text from threads')
    total = 0
    largest = 0
    !$omp parallel do private(part) lastprivate(largest)
    do i = 1, 100
      part = real16(i) / 10
      largest = part
      !$omp critical
      total = total + part
      !$omp end critical
    end do
    call check(abs(total - 505) < 1d-28 .and. largest == 10, 'private and lastprivate')
  end subroutine threads

  function expected(i) result(text)
    integer, intent(in) :: i
    character(10) :: text
    write (text, '(f10.2)') i / 4d0
    text = adjustl(text)
  end function expected
end program style_test
