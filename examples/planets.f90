! Where the planets stand: heliocentric positions from published orbital elements, in REAL*8 and in REAL*16.
!
!   planets ELEMENTS YYYY-MM-DD [PICTURE.svg]
!
! Both precisions solve Kepler's equation M = E - e sin E by Newton steps and turn the orbit into the ecliptic by a
! complex rotation. The REAL*8 side calls the value entries, and hands reference entries to its solver as procedure
! arguments; the REAL*16 side is the same formulas on the types of the module. They differ by what REAL*8 loses.
program planets
  use zorvikrt
  implicit none

  integer, parameter :: most = 20
  type :: planet
    character(len=12) :: name
    character(len=20) :: element(6), rate(6)   ! as in the file
    real(8) :: position(3)
    type(real16) :: exact(3)
  end type planet

  abstract interface
    pure function reference_entry(x) bind(c)
      import
      real(c_double), intent(in) :: x
      real(c_double) :: reference_entry
    end function reference_entry
  end interface

  type(planet) :: all(most)
  integer :: count, i
  character(len=256) :: elements, date, picture
  type(real16) :: centuries

  if (command_argument_count() < 2) call refuse('usage: planets ELEMENTS YYYY-MM-DD [PICTURE.svg]')
  call get_command_argument(1, elements)
  call get_command_argument(2, date)
  picture = ''
  if (command_argument_count() > 2) call get_command_argument(3, picture)
  centuries = (julian_day(date) - real16('2451545')) / 36525
  call read_elements(elements)

  print '(3a)', 'Heliocentric positions at ', trim(date), ' 0h TT, ecliptic of J2000, in astronomical units'
  print '(a)', ''
  print '(a8, 1x, a21, 1x, a37, 1x, a10)', '', 'REAL*8', 'REAL*16', 'difference'
  do i = 1, count
    call place(all(i))
    call show('x', all(i), 1)
    call show('y', all(i), 2)
    call show('z', all(i), 3)
  end do
  if (picture /= '') call draw(picture)

contains

  subroutine refuse(why)
    character(*), intent(in) :: why
    write (*, '(2a)') 'planets: ', why
    stop 2
  end subroutine refuse

  !> The Julian day number of 0h of a Gregorian date.
  function julian_day(text) result(day)
    character(*), intent(in) :: text
    type(real16) :: day
    integer :: y, m, d, status, a
    read (text, '(i4, 1x, i2, 1x, i2)', iostat=status) y, m, d
    if (status /= 0 .or. text(5:5) /= '-' .or. text(8:8) /= '-') call refuse("'" // trim(text) // "' is not a date YYYY-MM-DD")
    if (m < 1 .or. m > 12 .or. d < 1 .or. d > 31) call refuse("'" // trim(text) // "' is not a date YYYY-MM-DD")
    a = (14 - m) / 12
    y = y + 4800 - a
    m = m + 12 * a - 3
    day = real16(d + (153 * m + 2) / 5 + 365 * y + y / 4 - y / 100 + y / 400 - 32045) - 0.5d0
  end function julian_day

  subroutine read_elements(path)
    character(*), intent(in) :: path
    character(len=200) :: line
    integer :: unit, status, part
    open (newunit=unit, file=path, status='old', action='read', iostat=status)
    if (status /= 0) call refuse('cannot read ' // trim(path))
    count = 0
    part = 0
    do
      read (unit, '(a)', iostat=status) line
      if (status /= 0) exit
      ! The length of the line without its blanks, and a look for the mark of a comment.
      if (zorvik_len_trim(line, len(line)) == 0 .or. zorvik_index(line, '#', len(line), 1) == 1) cycle
      select case (part)
      case (0)
        if (count == most) call refuse('too many planets in ' // trim(path))
        count = count + 1
        call zorvik_casgn(all(count)%name, adjustl(line), len(all(count)%name), len_trim(line))
      case (1)
        read (line, *, iostat=status) all(count)%element
      case (2)
        read (line, *, iostat=status) all(count)%rate
      end select
      if (status /= 0) call refuse('six numbers expected: ' // trim(line))
      part = mod(part + 1, 3)
    end do
    close (unit)
    if (count == 0 .or. part /= 0) call refuse(trim(path) // ' ends within a planet')
  end subroutine read_elements

  subroutine place(p)
    type(planet), intent(inout) :: p
    type(real16) :: element(6)
    integer :: k
    do k = 1, 6
      element(k) = real16(p%element(k)) + real16(p%rate(k)) * centuries
    end do
    p%position = position_8(elements_8(p), zorvik_i_dsin, zorvik_i_dcos)
    p%exact = position_16(element)
  end subroutine place

  !> The elements at the date, in REAL*8.
  function elements_8(p) result(now)
    type(planet), intent(in) :: p
    real(8) :: now(6)
    integer :: k
    do k = 1, 6
      now(k) = number(p%element(k)) + number(p%rate(k)) * dble(centuries)
    end do
  end function elements_8

  pure real(8) function number(text)
    character(*), intent(in) :: text
    read (text, *) number
  end function number

  !> REAL*8 and COMPLEX*16: value entries, and sine and cosine as procedure arguments.
  function position_8(element, sine, cosine) result(at)
    real(8), intent(in) :: element(6)
    procedure(reference_entry) :: sine, cosine
    real(8) :: at(3), e, mean, anomaly, step, degree, node, inclination
    complex(8) :: plane, orbit, rotation
    integer :: k
    degree = zorvik_datan(1.0d0) / 45
    e = element(2)
    mean = zorvik_dmod(element(4) - element(5), 360.0d0) * degree
    anomaly = mean + e * sine(mean)
    do k = 1, 20
      step = (anomaly - e * sine(anomaly) - mean) / (1 - e * cosine(anomaly))
      anomaly = anomaly - step
      if (zorvik_dabs(step) < 1d-15) exit
    end do
    plane = element(1) * cmplx(cosine(anomaly) - e, zorvik_dsqrt(1 - e * e) * sine(anomaly), 8)
    call zorvik_cdexp(rotation, cmplx(0.0d0, (element(5) - element(6)) * degree, 8))
    call zorvik_cdmul(orbit, plane, rotation)
    node = element(6) * degree
    inclination = element(3) * degree
    at(1) = cosine(node) * real(orbit) - sine(node) * cosine(inclination) * aimag(orbit)
    at(2) = sine(node) * real(orbit) + cosine(node) * cosine(inclination) * aimag(orbit)
    at(3) = sine(inclination) * aimag(orbit)
  end function position_8

  !> REAL*16 and COMPLEX*32: the same formulas by declaration.
  function position_16(element) result(at)
    type(real16), intent(in) :: element(6)
    type(real16) :: at(3), e, mean, anomaly, step, degree, node, inclination
    type(complex32) :: orbit
    integer :: k
    degree = atan(real16(1)) / 45
    e = element(2)
    mean = mod(element(4) - element(5), real16(360)) * degree
    anomaly = mean + e * sin(mean)
    do k = 1, 20
      step = (anomaly - e * sin(anomaly) - mean) / (1 - e * cos(anomaly))
      anomaly = anomaly - step
      if (abs(step) < 1d-30) exit
    end do
    orbit = element(1) * cmplx(cos(anomaly) - e, sqrt(1 - e * e) * sin(anomaly))
    orbit = orbit * exp(cmplx(real16(0), (element(5) - element(6)) * degree))
    node = element(6) * degree
    inclination = element(3) * degree
    at(1) = cos(node) * real(orbit) - sin(node) * cos(inclination) * aimag(orbit)
    at(2) = sin(node) * real(orbit) + cos(node) * cos(inclination) * aimag(orbit)
    at(3) = sin(inclination) * aimag(orbit)
  end function position_16

  subroutine show(axis, p, k)
    character, intent(in) :: axis
    type(planet), intent(in) :: p
    integer, intent(in) :: k
    character(len=12) :: name
    name = p%name
    if (k > 1) name = ''
    print '(a7, 1x, a1, f21.16, 1x, DT"F"(37,32), 1x, es10.1)', name, axis, p%position(k), p%exact(k), &
        dble(p%position(k) - p%exact(k))
  end subroutine show

  !> A picture seen from the north of the ecliptic. Distances go by their square root, so that the inner planets
  !> keep apart.
  subroutine draw(path)
    character(*), intent(in) :: path
    character(len=7), parameter :: colour(8) = ['#8c8c8c', '#d9a441', '#3f7fd9', '#c8502f', '#b98b5e', '#d7bd7a', &
        '#6fb7c4', '#4a62c9']
    real(8), parameter :: size = 800, middle = size / 2
    real(8) :: now(6), longitude, at(3), scale
    integer :: unit, status, k, n
    logical :: right
    open (newunit=unit, file=path, status='replace', action='write', iostat=status)
    if (status /= 0) call refuse('cannot write ' // trim(path))
    scale = (middle - 60) / zorvik_dsqrt(maxval([(norm2(all(k)%position), k=1, count)]))
    write (unit, '(a, 2(i0, 1x), a)') '<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 ', int(size), int(size), &
        '" font-family="sans-serif" font-size="14">'
    write (unit, '(a)') '<rect width="100%" height="100%" fill="#0b1020"/>'
    write (unit, '(a)') '<text x="20" y="32" fill="#e8e8f0" font-size="18">The planets on ' // trim(date) // '</text>'
    write (unit, '(a)') '<text x="20" y="54" fill="#9aa0b8">from the north of the ecliptic; distances by their square root</text>'
    do k = 1, count
      now = elements_8(all(k))
      longitude = now(4)
      write (unit, '(3a)', advance='no') '<path fill="none" stroke="', colour(mod(k - 1, 8) + 1), '" stroke-opacity="0.55" d="'
      do n = 0, 180
        now(4) = longitude + 2 * n
        at = position_8(now, zorvik_i_dsin, zorvik_i_dcos)
        write (unit, '(a1, 2(f0.1, 1x))', advance='no') merge('M', 'L', n == 0), plotted(at, scale, middle)
      end do
      write (unit, '(a)') 'Z"/>'
    end do
    write (unit, '(a, 2(f0.1, a))') '<circle cx="', middle, '" cy="', middle, '" r="7" fill="#ffd23f"/>'
    do k = 1, count
      at(1:2) = plotted(all(k)%position, scale, middle)
      write (unit, '(2(a, f0.1), 3a)') '<circle cx="', at(1), '" cy="', at(2), '" r="5" fill="', colour(mod(k - 1, 8) + 1), '"/>'
      ! Names stand outward and inward in turn, so that neighbours do not write over each other.
      right = (at(1) > middle) .eqv. (mod(k, 2) == 1)
      write (unit, '(2(a, f0.1), 5a)') '<text x="', at(1) + merge(9, -9, right), '" y="', at(2) + 5, '" text-anchor="', &
          trim(merge('start', 'end  ', right)), '" fill="#e8e8f0">', trim(all(k)%name), '</text>'
    end do
    write (unit, '(a)') '</svg>'
    close (unit)
    print '(/, 2a)', 'picture: ', trim(path)
  end subroutine draw

  function plotted(at, scale, middle) result(point)
    real(8), intent(in) :: at(3), scale, middle
    real(8) :: point(2), r
    r = zorvik_dsqrt(at(1)**2 + at(2)**2)
    point = [middle + scale * at(1) / zorvik_dsqrt(r), middle - scale * at(2) / zorvik_dsqrt(r)]
  end function plotted
end program planets
