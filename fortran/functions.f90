  ! --- Functions without an entry of their own ----------------------------------------------------

  !> An INTEGER*8 as REAL*16, exactly.
  elemental function whole(k) result(r)
    integer(c_int64_t), intent(in) :: k
    type(real16) :: r
    call zorvik_ll2q(r, k)
  end function whole

  !> The remainder of the sign of p.
  !@ modulo | qq | q | `fmodl`, and p more where the signs differ
  elemental function modulo_q(a, p) result(r)
    type(real16), intent(in) :: a, p
    type(real16) :: r
    r = mod(a, p)
    if (r /= 0 .and. ((r < 0) .neqv. (p < 0))) r = r + p
  end function modulo_q

  !> The modulus of a COMPLEX*32, save that an infinite operand gives an infinity and a NaN else a NaN.
  !@ hypot | qq | q | `cabsl`
  elemental function hypot_q(x, y) result(r)
    type(real16), intent(in) :: x, y
    type(real16) :: r
    if (ieee_is_finite(x) .and. ieee_is_finite(y)) then
      r = abs(cmplx(x, y))
    else if (abs(x%parts%hi) > huge(0d0) .or. abs(y%parts%hi) > huge(0d0)) then
      r = infinity
    else
      r = not_a_number
    end if
  end function hypot_q

  !> log(1 + u) for u > -1 by Kahan's quotient: w = 1 + u rounded, log(w) u / (w - 1). logl keeps its relative error
  !> near 1.
  elemental function log_1_plus(u) result(r)
    type(real16), intent(in) :: u
    type(real16) :: r, w
    w = 1 + u
    if (w == 1) then
      r = u
    else
      r = log(w) * (u / (w - 1))
    end if
  end function log_1_plus

  !> log(1 + u) with u = |x| + x**2 / (1 + sqrt(1 + x**2)). From 2**60 on log(2 |x|) is the same to the last place.
  !@ asinh | q | q | `logl` `sqrtl`
  elemental function asinh_q(x) result(r)
    type(real16), intent(in) :: x
    type(real16) :: r, m
    m = abs(x)
    if (m < 2d0**60) then
      r = sign(log_1_plus(m + m * m / (1 + sqrt(1 + m * m))), x)
    else if (ieee_is_finite(x)) then
      r = sign(log(m) + log_2, x)
    else
      r = x
    end if
  end function asinh_q

  !> log(1 + t + sqrt(t (t + 2))) with t = x - 1. A NaN below 1.
  !@ acosh | q | q | `logl` `sqrtl`
  elemental function acosh_q(x) result(r)
    type(real16), intent(in) :: x
    type(real16) :: r
    if (x < 1 .or. x%parts%hi < 0) then
      r = not_a_number
    else if (x < 2d0**60) then
      r = x - 1
      r = log_1_plus(r + sqrt(r * (r + 2)))
    else if (ieee_is_finite(x)) then
      r = log(x) + log_2
    else
      r = x
    end if
  end function acosh_q

  !> log(1 + 2 |x| / (1 - |x|)) / 2. Infinities at -1 and 1, a NaN beyond.
  !@ atanh | q | q | `logl`
  elemental function atanh_q(x) result(r)
    type(real16), intent(in) :: x
    type(real16) :: r, m
    m = abs(x)
    if (m < 1) then
      r = sign(log_1_plus(2 * m / (1 - m)) * 0.5d0, x)
    else if (m == 1) then
      r = sign(infinity, x)
    else
      r = not_a_number
    end if
  end function atanh_q

  !> 2**(e - 106) for a leading part in [2**(e - 1), 2**e), not below tiny.
  !@ spacing | q | q | `frexpl` `ldexpl`
  elemental function spacing_q(x) result(r)
    type(real16), intent(in) :: x
    type(real16) :: r
    r = tiny(x)
    if (x /= 0) r = scale(real16(1d0), max(exponent(x) - digits(x), minexponent(x) - 1))
    if (.not. ieee_is_finite(x)) r = x - x
  end function spacing_q

  !@ rrspacing | q | q | `frexpl` `ldexpl`
  elemental function rrspacing_q(x) result(r)
    type(real16), intent(in) :: x
    type(real16) :: r
    r = scale(abs(fraction(x)), digits(x))
  end function rrspacing_q

  !> The neighbour among the numbers of 106 bits, on the side of the sign of s.
  !@ nearest | qq | q | `qadd` with the spacing
  elemental function nearest_q(x, s) result(r)
    type(real16), intent(in) :: x, s
    type(real16) :: r
    r = spacing(x)
    ! Below a power of two the numbers lie twice as dense.
    if (abs(fraction(x)) == 0.5d0 .and. ((s%parts%hi < 0) .neqv. (x%parts%hi < 0))) r = max(scale(r, -1), tiny(x))
    r = x + sign(r, s)
  end function nearest_q

  !@ nearest | qd | q | `qadd` with the spacing
  elemental function nearest_d(x, s) result(r)
    type(real16), intent(in) :: x
    real(c_double), intent(in) :: s
    type(real16) :: r
    r = nearest_q(x, real16(s))
  end function nearest_d

  !> Uniform in [0, 1), of 106 random bits: two numbers of the intrinsic generator, the second behind the first.
  !@ random_number | q | | `qaddd` on two REAL\*8
  impure elemental subroutine random_number_q(harvest)
    type(real16), intent(out) :: harvest
    real(c_double) :: leading, trailing
    call random_number(leading)
    call random_number(trailing)
    harvest = real16(leading) + trailing * 2d0**(-53)
  end subroutine random_number_q

  ! --- COMPLEX*32 -------------------------------------------------------------------------------------
  ! In each part only terms of one sign are added, so that each part keeps its digits. A zero has no sign here: on
  ! a cut the value is that of the imaginary part (or real part, of asinh and atan) coming from above.

  !@ sinh | x | x | `sinhl` `coshl` `sinl` `cosl`
  elemental function sinh_x(z) result(r)
    type(complex32), intent(in) :: z
    type(complex32) :: r
    r = cmplx(sinh(real(z)) * cos(aimag(z)), cosh(real(z)) * sin(aimag(z)))
  end function sinh_x

  !@ cosh | x | x | `sinhl` `coshl` `sinl` `cosl`
  elemental function cosh_x(z) result(r)
    type(complex32), intent(in) :: z
    type(complex32) :: r
    r = cmplx(cosh(real(z)) * cos(aimag(z)), sinh(real(z)) * sin(aimag(z)))
  end function cosh_x

  !> Kahan's form, with t = tan(y) and s = sinh(x): ((1 + t**2) s cosh(x) + i t) / (1 + (1 + t**2) s**2). From 38 on
  !> the real part is 1 to the last place.
  !@ tanh | x | x | `tanl` `sinhl` `coshl`; `expl` from 38 on
  elemental function tanh_x(z) result(r)
    type(complex32), intent(in) :: z
    type(complex32) :: r
    type(real16) :: x, y, t, s, b, d
    x = real(z)
    y = aimag(z)
    if (abs(x) < 38) then
      t = tan(y)
      s = sinh(x)
      b = 1 + t * t
      d = 1 + b * s * s
      r = cmplx(b * s * cosh(x) / d, t / d)
    else
      r = cmplx(sign(real16(1d0), x), 4 * sin(y) * cos(y) * exp(-2 * abs(x)))
    end if
  end function tanh_x

  !> -i tanh(iz).
  !@ tan | x | x | as tanh
  elemental function tan_x(z) result(r)
    type(complex32), intent(in) :: z
    type(complex32) :: r
    r = turned_back(tanh(turned(z)))
  end function tan_x

  !> Kahan's form, with s the conjugate of sqrt(1 - z) and t = sqrt(1 + z):
  !> atan(x / (Re s Re t + Im s Im t)) + i asinh(Re s Im t + Im s Re t).
  !@ asin | x | x | `csqrtl` `atanl`, asinh
  elemental function asin_x(z) result(r)
    type(complex32), intent(in) :: z
    type(complex32) :: r, s, t
    s = sqrt(cmplx(1 - real(z), aimag(z)))
    t = sqrt(cmplx(1 + real(z), aimag(z)))
    r = cmplx(angle(real(z), real(s) * real(t) + aimag(s) * aimag(t)), &
        asinh(real(s) * aimag(t) + aimag(s) * real(t)))
  end function asin_x

  !> As asin: 2 atan(Re s / Re t) - i asinh(Re s Im t + Im s Re t).
  !@ acos | x | x | `csqrtl` `atanl`, asinh
  elemental function acos_x(z) result(r)
    type(complex32), intent(in) :: z
    type(complex32) :: r, s, t
    s = sqrt(cmplx(1 - real(z), aimag(z)))
    t = sqrt(cmplx(1 + real(z), aimag(z)))
    r = cmplx(2 * angle(real(s), real(t)), -asinh(real(s) * aimag(t) + aimag(s) * real(t)))
  end function acos_x

  !> -i atanh(iz).
  !@ atan | x | x | as atanh
  elemental function atan_x(z) result(r)
    type(complex32), intent(in) :: z
    type(complex32) :: r
    r = turned_back(atanh(turned(z)))
  end function atan_x

  !> -i asin(iz).
  !@ asinh | x | x | as asin
  elemental function asinh_x(z) result(r)
    type(complex32), intent(in) :: z
    type(complex32) :: r
    r = turned_back(asin(turned(z)))
  end function asinh_x

  !> Kahan's form, with s = sqrt(z - 1) and t = sqrt(z + 1): asinh(Re s Re t + Im s Im t) + 2i atan(Im s / Re t).
  !@ acosh | x | x | `csqrtl` `atanl`, asinh
  elemental function acosh_x(z) result(r)
    type(complex32), intent(in) :: z
    type(complex32) :: r, s, t
    s = sqrt(z - 1)
    t = sqrt(z + 1)
    r = cmplx(asinh(real(s) * real(t) + aimag(s) * aimag(t)), 2 * angle(aimag(s), real(t)))
  end function acosh_x

  !> log(1 + 4 |x| / |1 - z|**2) / 4 with the sign of x, for x >= 0, and (arg(1 + z) - arg(1 - z)) / 2. Infinities at
  !> -1 and 1.
  !@ atanh | x | x | `cabsl` `logl` `atanl`
  elemental function atanh_x(z) result(r)
    type(complex32), intent(in) :: z
    type(complex32) :: r
    type(real16) :: x, y, m, h
    x = real(z)
    y = aimag(z)
    m = abs(x)
    h = hypot(1 - m, y)
    if (h == 0) then
      r = cmplx(atanh(x), y)
    else
      r = cmplx(sign(log_1_plus(4 * (m / h) / h) * 0.25d0, x), (angle(y, 1 + x) + angle(y, 1 - x)) * 0.5d0)
    end if
  end function atanh_x

  !> The angle of the point (x, y), to the last places everywhere, which zorvik_atan2l is not beside the y axis.
  elemental function angle(y, x) result(r)
    type(real16), intent(in) :: y, x
    type(real16) :: r
    if (abs(y) > abs(x)) then
      r = sign(half_pi, y) - atan(x / y)
    else if (x == 0) then
      r = x
    else
      r = atan(y / x)
      if (x < 0) r = r + sign(2 * half_pi, y)
    end if
  end function angle

  !> iz
  elemental function turned(z) result(r)
    type(complex32), intent(in) :: z
    type(complex32) :: r
    r = cmplx(-aimag(z), real(z))
  end function turned

  !> -iz
  elemental function turned_back(z) result(r)
    type(complex32), intent(in) :: z
    type(complex32) :: r
    r = cmplx(aimag(z), -real(z))
  end function turned_back
