! The generic functions of the module on every kind of operand and shape of array, against exact values, the same
! call on converted operands, and identities. Prints one line for each failure and a count at the end.
program generics_test
  use checks
  use zorvikrt
  use, intrinsic :: ieee_arithmetic
  implicit none
  type(real16) :: x, third, infinite, no_number
  x = 2.5d0
  third = real16(1) / 3
  infinite = real16('inf')
  no_number = real16('nan')
  call kinds
  call old_names
  call special_values
  call number_model
  call array_reductions
  call array_products
  call complex_functions
  call reductions_of_threads
  call report(53)

contains

  elemental logical function near(a, b)
    type(real16), intent(in) :: a, b
    near = abs(a - b) <= 4d-31 * abs(b)
  end function near

  elemental logical function close(a, b)
    type(complex32), intent(in) :: a, b
    close = abs(a - b) <= 1d-29 * abs(b)
  end function close

  subroutine kinds
    integer(1) :: b = -3
    integer(2) :: w = 1000
    integer(4) :: i = 7
    integer(8) :: k = 2_8**60 + 1
    real(4) :: f = 0.25
    real(8) :: d = 0.1d0
    call check(third + b == third + real16(b) .and. w - third == real16(w) - third .and. &
        third * w == third * real16(w) .and. b / third == real16(b) / third .and. k - third == real16(k) - third .and. &
        third - k == third - real16(k) .and. k / third == real16(k) / third .and. third / k == third / real16(k) .and. &
        third**b == third**(-3) .and. 2_1**x == 2**x, 'INTEGER*1 and INTEGER*2')
    call check(x > b .and. w >= x .and. x /= w .and. b < third .and. .not. third == w .and. &
        w <= real16(1000), 'their relations')
    b = x; w = -x; k = real16(k) + 1; i = real16(-7.9d0)
    call check(b == 2 .and. w == -2 .and. k == 2_8**60 + 2 .and. i == -7, 'integers from REAL*16')
    x = w
    call check(x == -2 .and. real16(w) == -2 .and. complex32(b) == 2 .and. &
        real16(2)**4_2 == 16, 'REAL*16 from integers')
    x = 2.5d0
    call check(real(third, 8) == third%parts%hi .and. real(third, 4) == real(1d0 / 3, 4) .and. &
        sngl(third) == real(third), 'real of a kind')
    call check(int(real16(k), 8) == k .and. nint(x, 8) == 3 .and. nint(-x, kind=8) == -3 .and. nint(x, 4) == 3 .and. &
        floor(-x, 4) == -3 .and. ceiling(x, 4) == 3 .and. floor(-x, 8) == -3 .and. ceiling(x, 8) == 3 .and. &
        int(real16(2_8**33 + 5), 4) == 5 .and. int(-x, 2) == -2, 'integers of a kind')
    call check(floor(real16(2_8**60), 8) == 2_8**60 .and. &
        ceiling(real16(-2_8**60) + 0.5d0, 8) == 1 - 2_8**60, 'large ones')
    call check(max(x, 1d0, 3) == 3 .and. min(1, x) == 1 .and. max(f, x, i) == 3 + abs(i + 7) - 0.5d0 .and. &
        min(x, 2_8) == 2 .and. max(d, x, d, third) == x .and. min(x, x, d, x) == d .and. &
        max(third, w) == third, 'max and min of mixed kinds')
    call check(max(third, x, third, x, third, 2 * x, x) == 5 .and. &
        min(x, x, x, x, x, third, x, x, x, -x, x, x, x, x, x, x) == -x, 'max and min of many')
    call check(mod(7, third) == mod(real16(7), third) .and. modulo(-x, 2) == 1.5d0 .and. modulo(7.0, -x) == -0.5d0 .and. &
        modulo(x, real16(0.5d0)) == 0 .and. dim(3, x) == 0.5d0 .and. sign(2, -x) == -2, 'remainders')
    call check(hypot(real16(3), 4) == 5 .and. hypot(3d0, real16(4)) == 5 .and. &
        near(atan2(1, x), atan2(real16(1), x)), 'hypot, atan2 of kinds')
    call check(cmplx(x, 1) == (2.5d0, 1d0) .and. cmplx(1.0, x) == (1d0, 2.5d0) .and. &
        complex32(1d0, x) == cmplx(1d0, x), 'cmplx')
  end subroutine kinds

  subroutine old_names
    real(8) :: d
    type(complex32) :: z
    z = (3d0, 4d0)
    call check(dabs(-x) == x .and. dsqrt(x) == sqrt(x) .and. dexp(x) == exp(x) .and. dlog(x) == log(x) .and. &
        dlog10(x) == log10(x) .and. dsin(x) == sin(x) .and. dcos(x) == cos(x) .and. dtan(x) == tan(x) .and. &
        dasin(third) == asin(third) .and. dacos(third) == acos(third) .and. datan(x) == atan(x) .and. &
        dsinh(x) == sinh(x) .and. dcosh(x) == cosh(x) .and. dtanh(x) == tanh(x) .and. &
        alog(x) == log(x), 'names of one operand')
    call check(datan2(x, 1d0) == atan2(x, 1d0) .and. dmod(x, third) == mod(x, third) .and. dsign(x, -1d0) == -x .and. &
        ddim(x, 1d0) == 1.5d0 .and. dmax1(x, 0d0, third) == x .and. dmin1(x, third) == third .and. dint(x) == 2 .and. &
        dnint(x) == 3 .and. idint(x) == 2 .and. idnint(x) == 3, 'names of two')
    call check(cdabs(z) == 5 .and. dimag(z) == 4 .and. dreal(z) == 3 .and. dconjg(z) == conjg(z) .and. &
        dcmplx(x, 0d0) == x .and. cdsqrt(z) == (2d0, 1d0) .and. cdexp(z) == exp(z) .and. cdsin(z) == sin(z) .and. &
        cdcos(z) == cos(z) .and. cdlog(z) == log(z), 'names of COMPLEX*16')
    d = dmax1(1d0, 2d0, 3d0) + dabs(-1d0) + max(1, 2) + sum([1d0, 2d0]) + maxval([1, 2]) + norm2([3d0, 4d0])
    call check(d == 16 .and. dcmplx(1d0, 2d0) == (1d0, 2d0) .and. &
        digits(d) == 53, 'they stay what they are for other types')
  end subroutine old_names

  subroutine special_values
    call check(isnan(no_number) .and. ieee_is_nan(no_number) .and. .not. isnan(infinite) .and. .not. isnan(x) .and. &
        ieee_is_nan(ieee_value(1d0, ieee_quiet_nan)) .and. ieee_is_finite(x) .and. &
        .not. ieee_is_finite(-infinite), 'tests for NaNs and infinities')
    call check(isnan(hypot(no_number, 1)) .and. dble(hypot(1d0, infinite)) > huge(1d0) .and. &
        dble(hypot(no_number, -infinite)) > huge(1d0), 'hypot of infinities and NaNs')
    call check(isnan(acosh(third)) .and. isnan(acosh(-infinite)) .and. isnan(atanh(x)) .and. &
        isnan(asinh(no_number)) .and. isnan(acosh(no_number)) .and. isnan(atanh(no_number)), 'outside the domains')
    call check(dble(asinh(infinite)) > huge(1d0) .and. dble(asinh(-infinite)) < -huge(1d0) .and. &
        dble(acosh(infinite)) > huge(1d0) .and. dble(atanh(real16(-1))) < -huge(1d0), 'infinite values')
    call check(asinh(real16(0)) == 0 .and. acosh(real16(1)) == 0 .and. atanh(real16(0)) == 0 .and. &
        near(sinh(asinh(x)), x) .and. near(tanh(atanh(third)), third) .and. near(cosh(acosh(x)), x), 'inverse pairs')
  end subroutine special_values

  subroutine number_model
    type(real16) :: sample(2000), square(3, 3)
    call check(digits(x) == 106 .and. radix(x) == 2 .and. precision(x) == 31 .and. range(x) == 291 .and. &
        minexponent(x) == -968 .and. maxexponent(x) == 1024 .and. precision(complex32('1')) == 31, 'the model')
    call check(tiny(x) == scale(real16(1), minexponent(x) - 1) .and. epsilon(x) == scale(real16(1), 1 - digits(x)) .and. &
        huge(x) > huge(1d0) .and. exponent(huge(x)) == maxexponent(x), 'its numbers')
    call check(spacing(real16(1)) == epsilon(x) .and. spacing(x) == 2 * epsilon(x) .and. &
        spacing(real16(0)) == tiny(x) .and. spacing(real16(1d-300)) == tiny(x) .and. &
        rrspacing(-x) == x / spacing(x) .and. isnan(spacing(infinite)), 'spacing, rrspacing')
    call check(nearest(real16(1), 1d0) == 1 + epsilon(x) .and. 1 - nearest(real16(1), -1d0) == epsilon(x) / 2 .and. &
        nearest(-x, x) == -x + spacing(x) .and. nearest(real16(0), -x) == -tiny(x), 'nearest')
    call check(set_exponent(x, 1) == 1.25d0 .and. set_exponent(x, exponent(x)) == x .and. &
        scale(x, 2_8) == 10, 'exponents')
    call random_number(sample)
    call random_number(square)
    call check(all(sample >= 0 .and. sample < 1) .and. all(square < 1) .and. &
        abs(sum(sample) / 2000 - 0.5d0) < 0.04d0 .and. count(sample%parts%lo /= 0) > 1900 .and. &
        abs(sum(mod(scale(sample, 53), 1)) / 2000 - 0.5d0) < 0.04d0, 'random numbers, and their bits behind the 53rd')
  end subroutine number_model

  subroutine array_reductions
    type(real16) :: v(6), m(2, 3), c(2, 3, 2)
    type(complex32) :: z(2, 2)
    real(8) :: dv(6), dm(2, 3), dc(2, 3, 2)
    logical :: keep(2, 3)
    integer :: d
    dv = [3, -1, 4, -1, 5, 4]
    dm = reshape(dv, [2, 3])
    dc = reshape([dv, 2 - dv], [2, 3, 2])
    v = real16(dv); m = real16(dm); c = real16(dc)
    keep = m > 0
    call check(sum(v) == sum(dv) .and. sum(m) == 14 .and. sum(c) == sum(dc) .and. sum(m, keep) == 16 .and. &
        sum(v, mask=v < 0) == -2 .and. sum(v, 1) == 14 .and. sum(v(:0)) == 0 .and. product(m) == 240 .and. &
        product(c, mask=c > 0) == product(dc, dc > 0), 'sums and products')
    do d = 1, 3
      if (d < 3) then
        call check(all(sum(m, d) == sum(dm, d)) .and. all(product(m, d, keep) == product(dm, d, keep)) .and. &
            all(maxval(m, d) == maxval(dm, d)) .and. all(minval(m, dim=d, mask=keep) == minval(dm, d, keep)) .and. &
            all(near(norm2(m, d)**2, real16(sum(dm**2, d)))) .and. all(maxloc(m, d) == maxloc(dm, d)) .and. &
            all(minloc(m, d, mask=keep, back=.true.) == minloc(dm, d, keep, back=.true.)) .and. &
            all(findloc(m, 4, dim=d) == findloc(dm, 4, dim=d)), 'matrices along dim')
      end if
      call check(all(sum(c, d, c > 0) == sum(dc, d, dc > 0)) .and. all(maxval(c, d) == maxval(dc, d)) .and. &
          all(product(c, d) == product(dc, d)) .and. all(maxloc(c, dim=d) == maxloc(dc, dim=d)) .and. &
          all(near(norm2(c, d)**2, real16(sum(dc**2, d)))) .and. &
          all(findloc(c, -3d0, dim=d, back=.true.) == findloc(dc, -3d0, dim=d, back=.true.)), 'rank 3 along dim')
    end do
    call check(maxval(v) == 5 .and. minval(m) == -1 .and. maxval(c, c < 3) == maxval(dc, dc < 3) .and. &
        maxval(v(:0)) == -huge(x) .and. minval(v, mask=v > 9) == huge(x) .and. &
        maxval([no_number, x]) == x, 'maxval, minval; of nothing, beside a NaN')
    call check(all(maxloc(v) == [5]) .and. all(minloc(v, back=.true.) == [4]) .and. all(maxloc(m) == maxloc(dm)) .and. &
        all(minloc(c) == minloc(dc)) .and. maxloc(v, 1, v < 5) == 3 .and. &
        maxloc(v, dim=1, mask=v < 5, back=.true.) == 6 .and. all(maxloc(v, mask=v > 9) == 0), 'maxloc, minloc')
    call check(all(findloc(v, -1) == [2]) .and. all(findloc(m, real16(4)) == [1, 2]) .and. &
        all(findloc(c, 9d0) == 0) .and. findloc(v, 4, dim=1, back=.true.) == 6 .and. &
        all(findloc(m, 4, mask=.not. keep) == 0), 'findloc')
    call check(norm2(scale(v([1, 3]), 1000)) == scale(real16(5), 1000) .and. &
        norm2(scale(v([1, 3]), 560)) == scale(real16(5), 560) .and. &
        norm2(scale(v([1, 3]), -900)) == scale(real16(5), -900) .and. norm2(v(:0)) == 0 .and. &
        near(norm2(m)**2, real16(68)), 'norm2, beyond the range of the squares')
    z = reshape([cmplx(x, 1), cmplx(x, -1), complex32('(0,2)'), complex32('1')], [2, 2])
    call check(sum(z) == (6d0, 2d0) .and. all(sum(z, 1) == [complex32('5'), complex32('(1,2)')]) .and. &
        product(z(:, 1)) == 7.25d0 .and. sum(z, mask=abs(z) < 2) == 1, 'sums and products of COMPLEX*32')
  end subroutine array_reductions

  subroutine array_products
    type(real16) :: a(2, 3), b(3, 2), v(3)
    type(complex32) :: za(2, 2), zv(2)
    real(8) :: da(2, 3), db(3, 2)
    da = reshape([1, 2, 3, 4, 5, 6], [2, 3])
    db = reshape([2, 7, 1, 8, 2, 8], [3, 2])
    a = real16(da); b = real16(db); v = [1, 2, 3] * third
    call check(all(matmul(a, b) == matmul(da, db)) .and. all(matmul(a, db) == matmul(da, db)) .and. &
        all(matmul(nint(da), b) == matmul(da, db)), 'matmul of matrices')
    call check(all(near(matmul(a, v) * 3, real16([22, 28]))) .and. &
        all(matmul([1d0, 2d0], a) == matmul([1d0, 2d0], da)), 'matmul with vectors')
    call check(near(dot_product(v, v), real16(14) / 9) .and. dot_product([1, 2, 3], a(1, :)) == 22 .and. &
        dot_product(a(1, :), [1.0, 2.0, 3.0]) == 22 .and. &
        dot_product(v, v(3:1:-1)) == dot_product(v(3:1:-1), v), 'dot_product')
    za = reshape([(1d0, 2d0), (3d0, 0d0), (0d0, 1d0), (2d0, -1d0)], [2, 2])
    zv = [(1d0, 1d0), (2d0, 0d0)]
    call check(dot_product(zv, za(:, 1)) == (9d0, 1d0) .and. &
        dot_product([(1d0, 1d0), (2d0, 0d0)], za(:, 1)) == (9d0, 1d0) .and. &
        dot_product(zv, [1d0, 2d0]) == (5d0, -1d0), 'dot_product conjugates its first operand')
    call check(all(matmul(za, zv) == [(-1d0, 5d0), (7d0, 1d0)]) .and. &
        all(matmul(real16([1, 1]), za) == [(4d0, 2d0), (2d0, 0d0)]), 'matmul of COMPLEX*32')
  end subroutine array_products

  subroutine complex_functions
    type(complex32) :: z(6), one, w
    integer :: i
    one = 1
    z = [complex32('(0.3,0.4)'), complex32('(-2.1,0.7)'), complex32('(1.5,-3.2)'), complex32('(-0.2,-1.9)'), &
        complex32('(1e-9,2e-9)'), complex32('(40,1)')]
    call check(all(close(sinh(z) + cosh(z), exp(z))) .and. all(close(tan(z(:5)), sin(z(:5)) / cos(z(:5)))) .and. &
        all(close(tanh(z), sinh(z) / cosh(z))), 'forward')
    call check(all(close(sin(asin(z(:4))), z(:4))) .and. all(close(cos(acos(z(:4))), z(:4))) .and. &
        all(close(tan(atan(z(:4))), z(:4))) .and. all(close(sinh(asinh(z)), z)) .and. &
        all(close(cosh(acosh(z(:4))), z(:4))) .and. all(close(tanh(atanh(z(:5))), z(:5))), 'inverse pairs')
    ! On the cuts, where the branch is that of the language's own types for a positive zero.
    do i = -1, 1, 2
      w = 2 * i
      call check(abs(asin(w) - asin(cmplx(2d0 * i, 0d0, 8))) + abs(acos(w) - acos(cmplx(2d0 * i, 0d0, &
          8))) + abs(acosh(w) - acosh(cmplx(2d0 * i, 0d0, 8))) + abs(atanh(w) - atanh(cmplx(2d0 * i, 0d0, &
          8))) < 1d-14, 'cuts on the real axis')
      w = cmplx(real16(0), 2 * i)
      call check(abs(asinh(w) - asinh(cmplx(0d0, 2d0 * i, 8))) + abs(atan(w) - atan(cmplx(0d0, 2d0 * i, &
          8))) < 1d-14, 'cuts on the imaginary axis')
    end do
    call check(.not. ieee_is_finite(real(atanh(one))) .and. aimag(atanh(one)) == 0, 'a pole')
  end subroutine complex_functions

  subroutine reductions_of_threads
    type(real16) :: total, factor, largest, smallest, values(50)
    type(complex32) :: z, turn
    integer :: i
    values = [(real16(mod(37 * i, 50)) / 4, i=1, 50)]
    total = 0; factor = 1; largest = -100; smallest = 100; z = 0; turn = 1
    !$omp parallel do reduction(+:total, z) reduction(*:factor, turn) reduction(.max.:largest) reduction(.min.:smallest)
    do i = 1, 50
      total = total + values(i)
      factor = factor * (1 + 1 / real16(i))
      largest = largest .max. values(i)
      smallest = min(smallest, values(i))
      z = z + cmplx(values(i), 1)
      turn = turn * (0d0, 1d0)
    end do
    call check(total == sum(values) .and. abs(factor - 51) < 1d-28, 'sum and product')
    call check(largest == maxval(values) .and. smallest == minval(values), 'max and min')
    call check(z == cmplx(total, 50) .and. turn == -1, 'COMPLEX*32')
  end subroutine reductions_of_threads
end program generics_test
