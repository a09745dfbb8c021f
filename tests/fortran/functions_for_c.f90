! The functions of the module that have no entry, for accuracy_test.cpp.
subroutine fortran_real(name, x, y, r) bind(c)
  use zorvikrt
  implicit none
  character(kind=c_char), intent(in) :: name(7)
  type(real16), intent(in) :: x, y
  type(real16), intent(out) :: r
  select case (transfer(name, '1234567'))
  case ('asinh');  r = asinh(x)
  case ('acosh');  r = acosh(x)
  case ('atanh');  r = atanh(x)
  case ('hypot');  r = hypot(x, y)
  case ('modulo'); r = modulo(x, y)
  case ('norm2');  r = norm2([x, y])
  case default; stop 'fortran_real: unknown name'
  end select
end subroutine fortran_real

subroutine fortran_complex(name, z, r) bind(c)
  use zorvikrt
  implicit none
  character(kind=c_char), intent(in) :: name(7)
  type(complex32), intent(in) :: z
  type(complex32), intent(out) :: r
  select case (transfer(name, '1234567'))
  case ('tan');   r = tan(z)
  case ('sinh');  r = sinh(z)
  case ('cosh');  r = cosh(z)
  case ('tanh');  r = tanh(z)
  case ('asin');  r = asin(z)
  case ('acos');  r = acos(z)
  case ('atan');  r = atan(z)
  case ('asinh'); r = asinh(z)
  case ('acosh'); r = acosh(z)
  case ('atanh'); r = atanh(z)
  case default; stop 'fortran_complex: unknown name'
  end select
end subroutine fortran_complex
