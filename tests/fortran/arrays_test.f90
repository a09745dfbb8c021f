! The array functions of long arrays against their definitions as plain loops. The test is built twice: with the module
! alone, and with the library zorvikrt_arrays linked, where they run on it; the name of the program tells which.
program arrays_test
  use checks
  use zorvikrt
  implicit none
  character(200) :: name
  integer :: n, round
  call get_command_argument(0, name)
  call check(zorvik_arrays_linked() .eqv. index(name, 'linked') > 0, 'on the library where it is linked')
  do round = 1, 40
    do n = 0, 67
      if (n < 20 .or. mod(n, 5) == mod(round, 5)) call vectors(n, round)
    end do
    call matrices(mod(round * 7, 30) + 1, mod(round * 11, 23) + 1, mod(round * 5, 31))
  end do
  call report(300)

contains

  logical function same(a, b)
    type(real16), intent(in) :: a, b
    same = all(transfer(a, [0_8]) == transfer(b, [0_8])) .or. (isnan(a) .and. isnan(b))
  end function same

  !> Ordinary values; in some rounds equal ones, or a few that leave the range of the squares, infinities and NaNs.
  subroutine draw(x, round)
    type(real16), intent(out) :: x(:)
    integer, intent(in) :: round
    integer :: i, exponent
    real(8) :: power(size(x))
    call random_number(x)
    call random_number(power)
    x = x - 0.5d0
    do i = 1, size(x)
      exponent = int(power(i) * 40) - 20
      x(i) = scale(x(i), exponent)
      if (mod(round, 4) == 1) x(i) = real(nint(dble(x(i))), 8)
      if (mod(round, 8) == 2) x(i) = scale(x(i), merge(-900, 500, round > 20))
      if (mod(round, 4) == 3 .and. power(i) > 0.97d0) x(i) = merge(real16('inf'), real16('nan'), power(i) > 0.98d0)
    end do
  end subroutine draw

  type(real16) function in_16(terms) result(r)
    type(real16), intent(in) :: terms(:)
    type(real16) :: s(0:15)
    integer :: i, half
    s = 0
    do i = 1, size(terms)
      s(mod(i - 1, 16)) = s(mod(i - 1, 16)) + terms(i)
    end do
    half = 8
    do while (half > 0)
      do i = 0, half - 1
        s(i) = s(i) + s(i + half)
      end do
      half = half / 2
    end do
    r = s(0)
  end function in_16

  subroutine vectors(n, round)
    integer, intent(in) :: n, round
    type(real16) :: x(n), y(n), terms(n), strided(2, n)
    type(complex32) :: z(n), w(n), total
    logical :: mask(n)
    integer :: i, e, first, last
    call draw(x, round)
    call draw(y, round)
    mask = y > 0
    strided(1, :) = y
    strided(2, :) = x
    z = cmplx(x, y)
    w = cmplx(y, x)
    call check(same(sum(x), in_16(x)) .and. same(sum(strided(2, :)), in_16(x)) .and. &
        same(sum(x, mask), in_16(pack(x, mask))), 'sum')
    total = sum(z)
    call check(same(real(total), in_16(x)) .and. same(aimag(total), in_16(y)), 'sum of COMPLEX*32')
    do i = 1, n
      terms(i) = x(i) * y(i)
    end do
    call check(same(dot_product(x, y), in_16(terms)) .and. same(dot_product(strided(2, :), strided(1, :)), in_16(terms)), &
        'dot_product')
    w = [(conjg(z(i)) * w(i), i=1, n)]
    total = dot_product(z, cmplx(y, x))
    call check(same(real(total), in_16(w%parts%re)) .and. same(aimag(total), in_16(w%parts%im)), 'dot_product of COMPLEX*32')
    e = 0
    if (n > 0) e = exponent(maxval(abs(dble(x)))) - 1
    if (abs(e - 100) <= 300 .or. mod(round, 4) == 3) e = 0
    terms = scale(x, -e)
    terms = terms * terms
    call check(same(norm2(x), scale(sqrt(in_16(terms)), e)), 'norm2')
    if (n == 0) return
    first = 1
    last = 1
    do i = 2, n
      if (x(i) > x(first) .or. isnan(x(first)) .and. .not. isnan(x(i))) first = i
      if (x(i) < x(last) .or. x(i) == x(last) .or. isnan(x(last)) .and. .not. isnan(x(i))) last = i
    end do
    call check(maxloc(x, 1) == first .and. minloc(x, 1, back=.true.) == last .and. same(maxval(x), x(first)) .and. &
        same(minval(-strided(2, :)), -x(first)), 'extremes')
    mask(last) = .false.
    call check(minloc(x, 1, mask, .true.) /= last .and. minloc(x, 1, .not. mask, .true.) > 0, 'extremes of a mask')
  end subroutine vectors

  subroutine matrices(m, n, k)
    integer, intent(in) :: m, n, k
    type(real16) :: a(m, k), b(k, n), c(m, n), d(m, n), rows(m)
    type(complex32) :: za(m, k), zb(k, n), zc(m, n), zd(m, n)
    integer :: i, j, l
    logical :: right
    do j = 1, k
      call draw(a(:, j), 0)
      call draw(b(j, :), 0)
    end do
    za = cmplx(a, 1 - a)
    zb = cmplx(b, b + 2)
    c = 0
    zc = 0
    do j = 1, n
      do l = 1, k
        do i = 1, m
          c(i, j) = c(i, j) + a(i, l) * b(l, j)
          zc(i, j) = zc(i, j) + za(i, l) * zb(l, j)
        end do
      end do
    end do
    d = matmul(a, b)
    zd = matmul(za, zb)
    right = all(c == d) .and. all(zc == zd) .and. all(matmul(a, b(:, 1)) == c(:, 1)) .and. all(matmul(a(1, :), b) == c(1, :))
    call check(right, 'matmul')
    rows = sum(a, 2)
    right = .true.
    do i = 1, m
      right = right .and. same(rows(i), in_16(a(i, :)))
    end do
    call check(right, 'sum along dim')
  end subroutine matrices
end program arrays_test
