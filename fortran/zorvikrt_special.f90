!> The special functions of the language for REAL*16, from the archive zorvikrt_special. docs/special.md tells the
!> errors, zorvikrt/special.h the special values.
module zorvikrt_special
  use, intrinsic :: iso_c_binding
  use zorvikrt, only: real16
  implicit none
  private
  public :: erf, erfc, erfc_scaled, gamma, log_gamma, bessel_j0, bessel_j1, bessel_jn, bessel_y0, bessel_y1, bessel_yn

  interface erf
    procedure erf_q
  end interface erf
  interface erfc
    procedure erfc_q
  end interface erfc
  interface erfc_scaled
    procedure erfc_scaled_q
  end interface erfc_scaled
  interface gamma
    procedure gamma_q
  end interface gamma
  interface log_gamma
    procedure log_gamma_q
  end interface log_gamma
  interface bessel_j0
    procedure bessel_j0_q
  end interface bessel_j0
  interface bessel_j1
    procedure bessel_j1_q
  end interface bessel_j1
  interface bessel_jn
    procedure bessel_jn_q, bessel_jn_range
  end interface bessel_jn
  interface bessel_y0
    procedure bessel_y0_q
  end interface bessel_y0
  interface bessel_y1
    procedure bessel_y1_q
  end interface bessel_y1
  interface bessel_yn
    procedure bessel_yn_q, bessel_yn_range
  end interface bessel_yn

  interface
    pure subroutine special_erf(r, x) bind(c, name='zorvikrt_special_erf')
      import
      type(real16), intent(out) :: r
      type(real16), value :: x
    end subroutine special_erf
    pure subroutine special_erfc(r, x) bind(c, name='zorvikrt_special_erfc')
      import
      type(real16), intent(out) :: r
      type(real16), value :: x
    end subroutine special_erfc
    pure subroutine special_erfc_scaled(r, x) bind(c, name='zorvikrt_special_erfc_scaled')
      import
      type(real16), intent(out) :: r
      type(real16), value :: x
    end subroutine special_erfc_scaled
    pure subroutine special_gamma(r, x) bind(c, name='zorvikrt_special_gamma')
      import
      type(real16), intent(out) :: r
      type(real16), value :: x
    end subroutine special_gamma
    pure subroutine special_log_gamma(r, x) bind(c, name='zorvikrt_special_log_gamma')
      import
      type(real16), intent(out) :: r
      type(real16), value :: x
    end subroutine special_log_gamma
    pure subroutine special_bessel_j0(r, x) bind(c, name='zorvikrt_special_bessel_j0')
      import
      type(real16), intent(out) :: r
      type(real16), value :: x
    end subroutine special_bessel_j0
    pure subroutine special_bessel_j1(r, x) bind(c, name='zorvikrt_special_bessel_j1')
      import
      type(real16), intent(out) :: r
      type(real16), value :: x
    end subroutine special_bessel_j1
    pure subroutine special_bessel_y0(r, x) bind(c, name='zorvikrt_special_bessel_y0')
      import
      type(real16), intent(out) :: r
      type(real16), value :: x
    end subroutine special_bessel_y0
    pure subroutine special_bessel_y1(r, x) bind(c, name='zorvikrt_special_bessel_y1')
      import
      type(real16), intent(out) :: r
      type(real16), value :: x
    end subroutine special_bessel_y1
    pure subroutine special_bessel_jn(r, n, x) bind(c, name='zorvikrt_special_bessel_jn')
      import
      type(real16), intent(out) :: r
      integer(c_int32_t), value :: n
      type(real16), value :: x
    end subroutine special_bessel_jn
    pure subroutine special_bessel_yn(r, n, x) bind(c, name='zorvikrt_special_bessel_yn')
      import
      type(real16), intent(out) :: r
      integer(c_int32_t), value :: n
      type(real16), value :: x
    end subroutine special_bessel_yn
  end interface

contains

  elemental function erf_q(x) result(r)
    type(real16), intent(in) :: x
    type(real16) :: r
    call special_erf(r, x)
  end function erf_q

  elemental function erfc_q(x) result(r)
    type(real16), intent(in) :: x
    type(real16) :: r
    call special_erfc(r, x)
  end function erfc_q

  elemental function erfc_scaled_q(x) result(r)
    type(real16), intent(in) :: x
    type(real16) :: r
    call special_erfc_scaled(r, x)
  end function erfc_scaled_q

  elemental function gamma_q(x) result(r)
    type(real16), intent(in) :: x
    type(real16) :: r
    call special_gamma(r, x)
  end function gamma_q

  elemental function log_gamma_q(x) result(r)
    type(real16), intent(in) :: x
    type(real16) :: r
    call special_log_gamma(r, x)
  end function log_gamma_q

  elemental function bessel_j0_q(x) result(r)
    type(real16), intent(in) :: x
    type(real16) :: r
    call special_bessel_j0(r, x)
  end function bessel_j0_q

  elemental function bessel_j1_q(x) result(r)
    type(real16), intent(in) :: x
    type(real16) :: r
    call special_bessel_j1(r, x)
  end function bessel_j1_q

  elemental function bessel_y0_q(x) result(r)
    type(real16), intent(in) :: x
    type(real16) :: r
    call special_bessel_y0(r, x)
  end function bessel_y0_q

  elemental function bessel_y1_q(x) result(r)
    type(real16), intent(in) :: x
    type(real16) :: r
    call special_bessel_y1(r, x)
  end function bessel_y1_q

  elemental function bessel_jn_q(n, x) result(r)
    integer, intent(in) :: n
    type(real16), intent(in) :: x
    type(real16) :: r
    call special_bessel_jn(r, n, x)
  end function bessel_jn_q

  !> The orders n1 to n2.
  pure function bessel_jn_range(n1, n2, x) result(r)
    integer, intent(in) :: n1, n2
    type(real16), intent(in) :: x
    type(real16) :: r(max(n2 - n1 + 1, 0))
    integer :: n
    do n = n1, n2
      call special_bessel_jn(r(n - n1 + 1), n, x)
    end do
  end function bessel_jn_range

  elemental function bessel_yn_q(n, x) result(r)
    integer, intent(in) :: n
    type(real16), intent(in) :: x
    type(real16) :: r
    call special_bessel_yn(r, n, x)
  end function bessel_yn_q

  !> The orders n1 to n2.
  pure function bessel_yn_range(n1, n2, x) result(r)
    integer, intent(in) :: n1, n2
    type(real16), intent(in) :: x
    type(real16) :: r(max(n2 - n1 + 1, 0))
    integer :: n
    do n = n1, n2
      call special_bessel_yn(r(n - n1 + 1), n, x)
    end do
  end function bessel_yn_range

end module zorvikrt_special
