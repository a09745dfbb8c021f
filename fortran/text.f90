  ! --- Text ----------------------------------------------------------------------------------------

  !> The number that a text holds, blanks around it aside; a NaN if it holds none.
  !@ real16 | text | q | the library zorvikrt\_text
  function real16_of_text(string) result(x)
    character(*), intent(in) :: string
    type(real16) :: x
    integer :: iostat
    character(100) :: iomsg
    call take_real16(string, x, iostat, iomsg)
    if (iostat /= 0) call take_real16('nan', x, iostat, iomsg)
  end function real16_of_text

  !@ complex32 | text | x | the library zorvikrt\_text
  function complex32_of_text(string) result(x)
    character(*), intent(in) :: string
    type(complex32) :: x
    integer :: iostat
    character(100) :: iomsg
    call take_complex32(string, x, iostat, iomsg)
    if (iostat /= 0) call take_complex32('(nan,nan)', x, iostat, iomsg)
  end function complex32_of_text

  subroutine take_real16(string, x, iostat, iomsg)
    character(*), intent(in) :: string
    type(real16), intent(inout) :: x
    integer, intent(out) :: iostat
    character(*), intent(inout) :: iomsg
    character(len=len(string)) :: token
    integer(c_int) :: reading
    token = adjustl(string)
    iostat = 0
    if (real16_from_chars(token, len_trim(token, c_size_t), x, reading) /= len_trim(token) &
        .or. reading == no_number) call refuse('REAL*16', string, iostat, iomsg)
  end subroutine take_real16

  subroutine take_complex32(string, x, iostat, iomsg)
    character(*), intent(in) :: string
    type(complex32), intent(inout) :: x
    integer, intent(out) :: iostat
    character(*), intent(inout) :: iomsg
    character(len=len(string)) :: token
    integer(c_int) :: reading
    token = adjustl(string)
    iostat = 0
    if (complex32_from_chars(token, len_trim(token, c_size_t), x, reading) /= len_trim(token) &
        .or. reading == no_number) call refuse('COMPLEX*32', string, iostat, iomsg)
  end subroutine take_complex32

  subroutine refuse(type_name, string, iostat, iomsg)
    character(*), intent(in) :: type_name, string
    integer, intent(out) :: iostat
    character(*), intent(inout) :: iomsg
    iostat = 9901
    iomsg = 'no ' // type_name // ' in "' // trim(adjustl(string)) // '"'
  end subroutine refuse

  ! No functions of deferred length: gfortran 12 keeps the length of such a result in static storage of the
  ! caller, which threads would share.
  subroutine styled(x, style, precision, string)
    type(real16), intent(in) :: x
    integer(c_int), intent(in) :: style, precision
    character(:), allocatable, intent(out) :: string
    integer(c_size_t) :: length
    allocate(character(100) :: string)
    length = real16_to_chars(string, len(string, c_size_t), x, style, precision)
    if (length > len(string)) then
      deallocate(string)
      allocate(character(length) :: string)
      length = real16_to_chars(string, length, x, style, precision)
    end if
    string = string(:length)
  end subroutine styled

  pure integer function real16_length(x)
    type(real16), intent(in) :: x
    character(1), parameter :: none = ' '
    real16_length = int(real16_chars(none, 0_c_size_t, x, shortest, 0))
  end function real16_length

  pure integer function complex32_length(x)
    type(complex32), intent(in) :: x
    complex32_length = real16_length(x%parts%re) + real16_length(x%parts%im) + 3
  end function complex32_length

  !> The shortest text that reads back as the same bits.
  !@ to_text | q | text | the library zorvikrt\_text
  function text_real16(x) result(string)
    type(real16), intent(in) :: x
    character(real16_length(x)) :: string
    integer(c_size_t) :: length
    length = real16_to_chars(string, len(string, c_size_t), x, shortest, 0)
  end function text_real16

  !@ to_text | x | text | the library zorvikrt\_text
  function text_complex32(x) result(string)
    type(complex32), intent(in) :: x
    character(complex32_length(x)) :: string
    string = '(' // text_real16(x%parts%re) // ',' // text_real16(x%parts%im) // ')'
  end function text_complex32

  !> A number as an edit descriptor asks for it: iotype as defined output has it, vlist (w, d) or (d).
  subroutine edited(x, iotype, vlist, string)
    type(real16), intent(in) :: x
    character(*), intent(in) :: iotype
    integer, intent(in) :: vlist(:)
    character(:), allocatable, intent(out) :: string
    integer :: width, digits
    width = 0
    digits = 32
    if (size(vlist) > 1) then
      width = vlist(1)
      digits = vlist(2)
    else if (size(vlist) == 1 .and. iotype /= 'DT') then
      digits = vlist(1)
    else if (size(vlist) == 1) then
      width = vlist(1)
    end if
    select case (iotype)
    case ('LISTDIRECTED')
      call styled(x, general, 33, string)
    case ('DTF', 'DTf')
      call styled(x, fixed, digits, string)
    case ('DTES', 'DTes')
      call styled(x, scientific, digits, string)
    case ('DTE', 'DTe')
      call styled(x, scientific, max(digits - 1, 0), string)
      call put_point_first(string)
    case ('DTG', 'DTg')
      call styled(x, general, digits, string)
    case default
      call styled(x, shortest, 0, string)
    end select
    if (iotype /= 'DT' .and. iotype /= 'LISTDIRECTED' .and. scan(string, 'e') > 0) &
        string(scan(string, 'e'):scan(string, 'e')) = 'E'
    if (width > 0) then
      if (len(string) > width) then
        string = repeat('*', width)
      else
        string = repeat(' ', width - len(string)) // string
      end if
    end if
  end subroutine edited

  !> 0.ddde+XX from d.dde+XX.
  subroutine put_point_first(string)
    character(:), allocatable, intent(inout) :: string
    integer :: e, first, power
    character(8) :: tail
    e = scan(string, 'e')
    if (e == 0) return
    first = 1
    if (string(1:1) == '-') first = 2
    read(string(e + 1:), *) power
    if (verify(string(first:e - 1), '0.') /= 0) power = power + 1
    write(tail, '(sp,i0.2)') power
    string = string(:first - 1) // '0.' // string(first:first) // string(first + 2:e - 1) // 'e' // trim(tail)
  end subroutine put_point_first

  subroutine write_real16(dtv, unit, iotype, vlist, iostat, iomsg)
    type(real16_parts), intent(in) :: dtv
    integer, intent(in) :: unit
    character(*), intent(in) :: iotype
    integer, intent(in) :: vlist(:)
    integer, intent(out) :: iostat
    character(*), intent(inout) :: iomsg
    character(:), allocatable :: string
    call edited(real16(dtv), iotype, vlist, string)
    write(unit, '(a)', iostat=iostat, iomsg=iomsg) string
  end subroutine write_real16

  subroutine write_complex32(dtv, unit, iotype, vlist, iostat, iomsg)
    type(complex32_parts), intent(in) :: dtv
    integer, intent(in) :: unit
    character(*), intent(in) :: iotype
    integer, intent(in) :: vlist(:)
    integer, intent(out) :: iostat
    character(*), intent(inout) :: iomsg
    character(:), allocatable :: re, im
    call edited(dtv%re, iotype, vlist, re)
    call edited(dtv%im, iotype, vlist, im)
    write(unit, '(a)', iostat=iostat, iomsg=iomsg) '(' // re // ',' // im // ')'
  end subroutine write_complex32

  subroutine read_real16(dtv, unit, iotype, vlist, iostat, iomsg)
    type(real16_parts), intent(inout) :: dtv
    integer, intent(in) :: unit
    character(*), intent(in) :: iotype
    integer, intent(in) :: vlist(:)
    integer, intent(out) :: iostat
    character(*), intent(inout) :: iomsg
    type(real16) :: x
    character(1500) :: token
    x = real16(dtv)
    call read_token(unit, iotype, vlist, token, iostat, iomsg)
    if (iostat == 0 .and. token /= ' ') call take_real16(trim(token), x, iostat, iomsg)
    dtv = x%parts
  end subroutine read_real16

  subroutine read_complex32(dtv, unit, iotype, vlist, iostat, iomsg)
    type(complex32_parts), intent(inout) :: dtv
    integer, intent(in) :: unit
    character(*), intent(in) :: iotype
    integer, intent(in) :: vlist(:)
    integer, intent(out) :: iostat
    character(*), intent(inout) :: iomsg
    type(complex32) :: x
    character(1500) :: token, rest
    x = complex32(dtv)
    call read_token(unit, iotype, vlist, token, iostat, iomsg)
    ! In list-directed input the comma ends the first part.
    do while (iostat == 0 .and. token(1:1) == '(' .and. index(token, ')') == 0)
      call read_token(unit, iotype, vlist, rest, iostat, iomsg)
      if (iostat == 0 .and. rest == ' ') exit
      token = trim(token) // ',' // rest
    end do
    if (iostat == 0 .and. token /= ' ') call take_complex32(trim(token), x, iostat, iomsg)
    dtv = x%parts
  end subroutine read_complex32

  !> The characters of one value: up to a separator in list-directed input, w of them under DT(w), the
  !> rest of the record under DT. Blank for a null value, which leaves the variable as it was.
  subroutine read_token(unit, iotype, vlist, token, iostat, iomsg)
    integer, intent(in) :: unit
    character(*), intent(in) :: iotype
    integer, intent(in) :: vlist(:)
    character(*), intent(out) :: token
    integer, intent(out) :: iostat
    character(*), intent(inout) :: iomsg
    integer :: width
    token = ' '
    if (iotype(1:2) /= 'DT') then
      read(unit, *, iostat=iostat, iomsg=iomsg) token
    else
      width = len(token)
      if (size(vlist) > 0) width = vlist(1)
      if (width < 1 .or. width > len(token)) width = len(token)
      read(unit, '(a)', iostat=iostat, iomsg=iomsg) token(:width)
      if (is_iostat_eor(iostat)) iostat = 0
    end if
  end subroutine read_token
