! The Fortran module: operators, assignment and generic names reach their entries, references can be passed to
! procedures, and formatted I/O gives back what it took. Prints one line for each failure and a count at the end.
program module_test
  use checks
  use zorvikrt
  implicit none

  call arithmetic
  call relations
  call functions
  call conversions
  call complexes
  call arrays
  call both_entry_forms
  call formatted_io
  call report(80)

contains

  elemental logical function same(a, b)
    type(real16), intent(in) :: a, b
    same = transfer(a%parts%hi, 0_c_int64_t) == transfer(b%parts%hi, 0_c_int64_t) .and. &
        transfer(a%parts%lo, 0_c_int64_t) == transfer(b%parts%lo, 0_c_int64_t)
  end function same

  subroutine arithmetic
    type(real16) :: third, x
    integer(8), parameter :: large = 2_8**62 + 1
    third = real16(1) / 3
    check_sums: block
      call check(same(third, real16(1.0d0 / 3, 1.850371707708594d-17)), '1/3')
      call check(abs(third * 3 - 1) < 1d-31, '3 * 1/3')
      x = third + 2.5d0
      call check(same(x - 2.5d0, x - real16(2.5d0)), 'a REAL*8 beside a REAL*16')
      call check(same(2.5d0 + third, x), 'a REAL*8 in front')
      call check(same(2.5d0 - x, -(x - 2.5d0)), 'reverse subtraction')
      call check(same(x + 1.5, x + 1.5d0), 'a REAL*4')
      call check(same(x * 7, x * 7.0d0) .and. same(7 * x, x * 7), 'an INTEGER*4')
      call check((x + large) - large == x + real16(large) - real16(large), 'an INTEGER*8 keeps its 63 bits')
      call check(real16(large) - 1 == 2.0d0**62, 'a large INTEGER*8')
      call check((large - real16(1)) / large < 1, 'INTEGER*8 in front')
      call check(1.0d0 / third == 3, 'REAL*8 / REAL*16')
      call check(6 / real16(3) == 2, 'INTEGER*4 / REAL*16')
      call check(real16(3)**4 == 81 .and. real16(2)**(-1) == 0.5d0, 'INTEGER*4 power')
      call check(real16(3)**4_8 == 81, 'INTEGER*8 power')
      call check(abs(real16(2)**0.5d0 - sqrt(real16(2))) < 1d-30, 'REAL*8 power')
      call check(abs(2**real16(0.5d0) - sqrt(real16(2))) < 1d-30, 'power of an INTEGER*4')
      call check(same(-third, real16(-third%parts%hi, -third%parts%lo)) .and. same(+third, third), 'signs')
    end block check_sums
  end subroutine arithmetic

  subroutine relations
    type(real16) :: one, above, no_number
    one = 1
    above = one + real16('1e-30')
    no_number = real16('nan')
    call check(above > one .and. .not. above <= one .and. one < above .and. .not. one >= above, 'order by the tail')
    call check(one == 1 .and. one == 1.0d0 .and. 1.0 == one .and. one /= above, 'equality over kinds')
    call check(one <= 1 .and. one >= 1.0d0, 'weak relations')
    call check(.not. no_number == no_number .and. no_number /= no_number, 'a NaN equals nothing')
    call check(.not. (no_number < one .or. no_number > one .or. no_number <= one .or. no_number >= one), 'a NaN is unordered')
    call check(max(one, above) == above .and. min(one, above) == one, 'max and min')
    call check(max(one, 2d0) == 2 .and. min(0.5d0, one) == 0.5d0 .and. max(one, above, real16(3)) == 3, 'max and min of kinds')
    call check(one < 2_8**62 .and. 2_8**62 >= one .and. real16(2_8**62 + 1) > 2_8**62, 'order by an INTEGER*8')
  end subroutine relations

  subroutine functions
    type(real16) :: x, pi
    x = real16('0.7')
    pi = 4 * atan(real16(1))
    call check(abs(sin(x)**2 + cos(x)**2 - 1) < 1d-30, 'sin, cos')
    call check(abs(tan(x) - sin(x) / cos(x)) < 1d-30 .and. abs(cotan(x) * tan(x) - 1) < 1d-30, 'tan, cotan')
    call check(abs(asin(sin(x)) - x) < 1d-30 .and. abs(acos(cos(x)) - x) < 1d-30, 'asin, acos')
    call check(abs(atan2(sin(x), cos(x)) - x) < 1d-30, 'atan2')
    call check(abs(log(exp(x)) - x) < 1d-30 .and. abs(log10(real16(1000)) - 3) < 1d-30, 'exp, log, log10')
    call check(abs(cosh(x)**2 - sinh(x)**2 - 1) < 1d-29 .and. abs(tanh(x) * cosh(x) - sinh(x)) < 1d-29, 'hyperbolic')
    call check(abs(sind(real16(30)) - 0.5d0) < 1d-30 .and. abs(cosd(real16(60)) - 0.5d0) < 1d-30 &
        .and. abs(tand(real16(45)) - 1) < 1d-30, 'degrees')
    call check(abs(asind(real16(0.5d0)) - 30) < 1d-28 .and. abs(acosd(real16(0.5d0)) - 60) < 1d-28 &
        .and. abs(atand(real16(1)) - 45) < 1d-28 .and. abs(atan2d(real16(1), real16(1)) - 45) < 1d-28, 'into degrees')
    call check(abs(pi - real16('3.14159265358979323846264338327950288')) < 1d-31, 'pi')
    call check(sqrt(real16(4)) == 2 .and. abs(real16(-2)) == 2, 'sqrt, abs')
    x = real16('-2.75')
    call check(aint(x) == -2 .and. anint(x) == -3 .and. nint(x) == -3, 'aint, anint, nint')
    call check(ceiling(x) == -2 .and. floor(x) == -3 .and. int(x) == -2, 'ceiling, floor, int')
    call check(sign(real16(2), x) == -2 .and. dim(real16(3), x) == 5.75d0 .and. mod(x, real16(2)) == -0.75d0, &
        'sign, dim, mod')
    call check(sign(2d0, x) == -2 .and. dim(real16(3), 1d0) == 2 .and. mod(7d0, real16(4)) == 3, 'REAL*8 beside a REAL*16')
    call check(same(atan(x, pi), atan2(x, pi)) .and. same(atan2(1d0, pi), atan2(real16(1), pi)), 'atan of two')
    call check(knint(real16(2_8**60 + 1)) == 2_8**60 + 1 .and. inint(real16(32769)) == -32767_2 .and. jnint(x) == -3, &
        'nint by kind')
    call check(same(scale(x, 10), x * 1024) .and. fraction(x) == -0.6875d0 .and. exponent(x) == 2, &
        'scale, fraction, exponent')
    call check(same(qprod(0.1d0, 3d0), real16(0.1d0) * 3), 'exact product')
    call check(1 + epsilon(x) > 1 .and. huge(x) > huge(1d0) / 2, 'inquiries')
  end subroutine functions

  subroutine conversions
    type(real16) :: x
    real(8) :: d
    real(4) :: s
    integer :: i
    integer(8) :: k
    x = 2_8**53 + 1
    k = x
    call check(k == 2_8**53 + 1, 'INTEGER*8 and back')
    x = 0.1
    call check(x == real(0.1, 8), 'from REAL*4')
    x = real16('0.1')
    d = x
    s = x
    call check(d == 0.1d0 .and. s == 0.1 .and. dble(x) == 0.1d0 .and. real(x) == 0.1, 'to the default kinds')
    call check(x - 0.1d0 /= 0 .and. abs(x * 10 - 1) < 1d-31, 'text keeps what a REAL*8 loses')
    x = -7
    i = x
    call check(i == -7, 'INTEGER*4 and back')
    x = real16('one')
    call check(x /= x, 'a text that is no number')
  end subroutine conversions

  subroutine complexes
    type(complex32) :: z, w
    complex(8) :: c
    z = cmplx(real16(3), real16(4))
    call check(abs(z) == 5 .and. real(z) == 3 .and. aimag(z) == 4, 'abs and parts')
    call check(z * conjg(z) == cmplx(real16(25)), 'conjg and product')
    call check(sqrt(z) == cmplx(real16(2), real16(1)), 'sqrt')
    call check((z + 1) - z == cmplx(real16(1)) .and. z / z == cmplx(real16(1)) .and. z /= -z, 'sums and quotient')
    call check(z**2 == z * z, 'integer power')
    w = exp(log(z)) - z
    call check(abs(w) < 1d-29, 'exp and log')
    w = sin(z)**2 + cos(z)**2 - 1.0d0
    call check(abs(w) < 1d-26, 'sin and cos')
    w = z**cmplx(real16(0.5d0)) - sqrt(z)
    call check(abs(w) < 1d-29, 'complex power')
    z = (1d0, 2d0)
    c = z
    call check(c == (1d0, 2d0) .and. z == (0d0, 2d0) + z - (0d0, 2d0), 'COMPLEX*16')
    call check(z * 2 == 2 * z .and. z + 1_8 == 1.0 + z .and. z / 2d0 == z * 0.5d0, 'COMPLEX*32 beside real kinds')
    call check(z == (1d0, 2d0) .and. (1.0, 2.0) == z .and. z /= 1, 'COMPLEX*32 beside complex kinds')
    call check(real16(3) * (1d0, 2d0) == cmplx(real16(3), 6d0), 'REAL*16 times COMPLEX*16')
    call check(complex32('(1,2)') == z .and. complex32(1d0, 2d0) == z, 'constructors')
    z = real16(2) * z
    call check(aimag(z) == 4, 'REAL*16 times COMPLEX*32')
  end subroutine complexes

  subroutine arrays
    type(real16) :: x(4)
    integer :: i
    x = [(real16(i), i=1, 4)]
    x = x * x + 0.5d0
    call check(all(x == [1.5d0, 4.5d0, 9.5d0, 16.5d0]), 'operators are elemental')
    call check(all(abs(sqrt(x)**2 - x) < 1d-30), 'functions are elemental')
    call check(sum(x) == 32 .and. product(x(:2)) == 6.75d0 .and. dot_product(x, x) == 385d0, 'reductions')
  end subroutine arrays

  subroutine both_entry_forms
    interface
      function real_function(x) bind(c)
        import
        real(c_double), intent(in) :: x
        real(c_double) :: real_function
      end function real_function
    end interface
    real(8) :: points(3)
    points = [0.1d0, 0.5d0, 1.0d0]
    call check(all(tabulated(zorvik_i_dsin, points) == [zorvik_dsin(0.1d0), zorvik_dsin(0.5d0), zorvik_dsin(1.0d0)]), &
        'a reference entry as an actual argument')
    call check(zorvik_iishft(1_2, 15_2) == -32768, 'INTEGER*2 operands')
    call check(zorvik_i_kmod(7_8, 2_8) == 1, 'INTEGER*8 by reference')
    call check(zorvik_index('hello world', 'o w', 11, 3) == 5, 'CHARACTER operands')
    call check(zorvik_cexp((0.0, 0.0)) == (1.0, 0.0), 'a COMPLEX*8 result')
  end subroutine both_entry_forms

  function tabulated(f, points) result(values)
    interface
      pure function f(x) bind(c)
        import
        real(c_double), intent(in) :: x
        real(c_double) :: f
      end function f
    end interface
    real(8), intent(in) :: points(:)
    real(8) :: values(size(points))
    integer :: i
    do i = 1, size(points)
      values(i) = f(points(i))
    end do
  end function tabulated

  subroutine formatted_io
    type(real16) :: x, y
    type(complex32) :: z, w
    character(200) :: line
    integer :: status
    x = real16(1) / 3
    write (line, '(DT"F"(20,10))') x
    call check(line == '        0.3333333333', 'fixed: ' // trim(line))
    write (line, '(DT"E"(5), 1x, DT"G"(12,4))') x, x
    call check(line == '0.33333E+00       0.3333', 'scientific and general: ' // trim(line))
    write (line, '(DT"F"(4,10))') x
    call check(line == '****', 'too narrow')
    write (line, '(DT"S")') x
    read (line, *) y
    call check(same(x, y), 'shortest text: ' // trim(line))
    write (line, *) x, 2 * x
    read (line, *) y, x
    call check(abs(x - 2 * y) < 1d-30, 'list-directed')
    z = cmplx(real16('0.1'), real16(-2))
    write (line, *) z
    read (line, *) w
    call check(abs(w - z) < 1d-31, 'COMPLEX*32: ' // trim(line))
    read (line, *, iostat=status) x
    call check(status /= 0, 'a COMPLEX*32 is not read as a REAL*16')
    line = ' 1.5d0, [1+1e-300]  3,, -7e-1'
    x = 0
    block
      type(real16) :: items(5)
      items = 9
      read (line, *) items
      call check(same(items(1), real16(1.5d0)) .and. same(items(2), real16(1d0, 1d-300)) .and. items(3) == 3 .and. &
          items(4) == 9 .and. same(items(5), real16('-0.7')), 'five items, one of them null')
    end block
    line = '  1.25 -0.5e1'
    read (line, '(DT(6), DT(7))') x, y
    call check(x == 1.25d0 .and. y == -5, 'by width')
    write (line, '(DT"ES"(14,6), "|", DT"E"(14,6), "|", DT"F"(3))') -x, x / 1024, y
    call check(line == ' -1.250000E+00|  0.122070E-02|-5.000', 'editing: ' // trim(line))
    write (line, '(DT"E"(10,2), DT, DT"F"(8,2))') real16(0), real16(0.1d0), real16('-inf')
    call check(line == '  0.00E+00[0.1+0]    -inf', 'editing: ' // trim(line))
    write (line, '(DT)') cmplx(real16(0.5d0), real16(1) / 3)
    read (line, '(DT)') z
    call check(z == cmplx(real16(0.5d0), real16(1) / 3) .and. to_text(z) == line, 'COMPLEX*32: ' // trim(line))
    call check(all_come_back(1000), 'random values through text')
    line = 'rubbish'
    read (line, *, iostat=status) x
    call check(status /= 0, 'rubbish is not read')
  end subroutine formatted_io

  !> Random pairs, with tails of any size, are the same bits after writing and reading.
  logical function all_come_back(count)
    integer, intent(in) :: count
    type(real16) :: x, y
    real(8) :: random(3)
    character(100) :: line
    integer :: i
    all_come_back = .true.
    do i = 1, count
      call random_number(random)
      x%parts%hi = (random(1) - 0.5d0) * 10.0d0**int(40 * random(2) - 20)
      x%parts%lo = x%parts%hi * (random(3) - 0.5d0) * 2.0d0**(-53 - mod(i, 60))
      write (line, '(DT)') x
      read (line, *) y
      all_come_back = all_come_back .and. same(x, y)
    end do
  end function all_come_back
end program module_test
