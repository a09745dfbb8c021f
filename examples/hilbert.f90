! Solves Hilbert systems of order 2 to 20 in REAL*8 and in REAL*16 and draws the errors.
!
!   hilbert [SVG]
!
! The matrix is the Hilbert matrix times the least common multiple of 1 to 39, so that its elements are
! integers that a REAL*8 holds; the solution is all ones. Its condition grows by a factor of 30 with each
! order, to 1e28: beyond order 12 nothing of a REAL*8 solution is right.

program hilbert
  use zorvikrt
  use zorvikrt_arrays
  implicit none
  integer, parameter :: largest = 20
  real(8), parameter :: multiple = 5342931457063200d0
  real(8) :: errors(2, 2:largest)
  character(len=1024) :: path
  integer :: n, status

  print '(a)', 'order  error in REAL*8  error in REAL*16'
  do n = 2, largest
    errors(1, n) = error_of_real8(n)
    errors(2, n) = error_of_real16(n)
    print '(i5, 2es17.2)', n, errors(:, n)
  end do
  call get_command_argument(1, path, status=status)
  if (status == 0) call draw(trim(path))

contains

  pure function element(i, j) result(value)
    integer, intent(in) :: i, j
    real(8) :: value
    value = multiple / (i + j - 1)  ! exact
  end function

  !> The largest deviation from 1 by Gaussian elimination with row exchanges.
  function error_of_real8(n) result(error)
    integer, intent(in) :: n
    real(8) :: error, a(n, n + 1), held(n + 1)
    integer :: i, j, k, pivot
    do i = 1, n
      a(i, :n) = [(element(i, j), j = 1, n)]
      a(i, n + 1) = sum(a(i, :n))
    end do
    do k = 1, n
      pivot = k - 1 + maxloc(abs(a(k:, k)), dim=1)
      held = a(k, :)
      a(k, :) = a(pivot, :)
      a(pivot, :) = held
      do i = k + 1, n
        a(i, k + 1:) = a(i, k + 1:) - a(i, k) / a(k, k) * a(k, k + 1:)
      end do
    end do
    do k = n, 1, -1
      a(k, n + 1) = (a(k, n + 1) - sum(a(k, k + 1:n) * a(k + 1:n, n + 1))) / a(k, k)
    end do
    error = maxval(abs(a(:, n + 1) - 1))
  end function

  function error_of_real16(n) result(error)
    integer, intent(in) :: n
    real(8) :: error
    type(real16) :: a(n, n), b(n, 1)
    integer :: pivots(n), i, j
    do i = 1, n
      do j = 1, n
        a(i, j) = element(i, j)
      end do
      b(i, 1) = zorvik_sum(a(i, :))
    end do
    call zorvik_gesv(n, 1, a, n, pivots, b, n)
    error = 0
    do i = 1, n
      error = max(error, abs(dble(b(i, 1) - 1)))
    end do
  end function

  !> Errors over the order, with a logarithmic scale from 1e-34 to 1e4.
  subroutine draw(path)
    character(len=*), intent(in) :: path
    character(len=*), parameter :: colours(2) = ['#c0392b', '#2060a0'], names(2) = ['REAL*8 ', 'REAL*16']
    integer :: unit, status, n, kind, decade
    open (newunit=unit, file=path, action='write', iostat=status)
    if (status /= 0) error stop 'hilbert: cannot write the picture'
    write (unit, '(a)') '<svg xmlns="http://www.w3.org/2000/svg" width="640" height="460" font-family="sans-serif" ' // &
        'font-size="13">', '<rect width="640" height="460" fill="white"/>', &
        '<text x="320" y="24" text-anchor="middle">Largest error of the solution of a Hilbert system</text>'
    do decade = -32, 4, 4
      write (unit, '(2(a,f0.1),a,i0,a)') '<path d="M60 ', height(10d0**decade), 'H620" stroke="#ddd"/>' // &
          '<text x="54" y="', height(10d0**decade) + 4, '" text-anchor="end">1e', decade, '</text>'
    end do
    do n = 2, largest, 2
      write (unit, '(a,f0.1,a,i0,a)') '<text x="', across(n), '" y="440" text-anchor="middle">', n, '</text>'
    end do
    do kind = 1, 2
      write (unit, '(3a)', advance='no') '<polyline fill="none" stroke="', colours(kind), '" stroke-width="2" points="'
      write (unit, '(*(f0.1,",",f0.1,:," "))', advance='no') (across(n), height(errors(kind, n)), n = 2, largest)
      write (unit, '(a)') '"/>'
      write (unit, '(a,f0.1,5a)') '<text x="380" y="', height(errors(kind, 12)) - 12, '" fill="', colours(kind), '">', &
          trim(names(kind)), '</text>'
    end do
    write (unit, '(a)') '</svg>'
    close (unit)
  end subroutine

  pure function across(n) result(x)
    integer, intent(in) :: n
    real(8) :: x
    x = 60 + (n - 2) * 560d0 / (largest - 2)
  end function
  pure function height(error) result(y)
    real(8), intent(in) :: error
    real(8) :: y
    y = 420 - (log10(max(error, 1d-34)) + 34) * 380 / 38
  end function

end program hilbert
