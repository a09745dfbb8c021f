  ! --- Vectors -------------------------------------------------------------------------------------
  ! What the array functions of all ranks come to. A sum is taken in 16 partial sums, joined by a tree; products go
  ! from the first element on. Long ones run on the library zorvikrt_arrays, where the program links it, with the
  ! same bits: it calls zorvik_take_arrays when it is loaded.

  !> Whether sums, products and extremes of long arrays run on the library zorvikrt_arrays.
  !@ zorvik_arrays_linked | | l | —
  function arrays_are_linked() result(r)
    logical :: r
    r = associated(fast%sum_q)
  end function arrays_are_linked

!@ both
  pure function sum_@k@(v) result(r)
    @t@, intent(in) :: v(:)
    @t@ :: r, s(16)
    integer :: i
    if (size(v) >= worth_a_call .and. associated(fast%sum_@k@)) then
      call fast%sum_@k@(size(v, kind=c_intptr_t), v, r)
      return
    end if
    s = 0
    do i = 1, size(v)
      s(iand(i - 1, 15) + 1) = s(iand(i - 1, 15) + 1) + v(i)
    end do
    r = joined_@k@(s)
  end function sum_@k@

  !> The sum of 16 partial sums: 8 and 8, 4 and 4, 2 and 2, 1 and 1.
  pure function joined_@k@(partial) result(r)
    @t@, intent(in) :: partial(16)
    @t@ :: r, s(16)
    s = partial
    s(:8) = s(:8) + s(9:)
    s(:4) = s(:4) + s(5:8)
    s(:2) = s(:2) + s(3:4)
    r = s(1) + s(2)
  end function joined_@k@

  pure function product_@k@(v) result(r)
    @t@, intent(in) :: v(:)
    @t@ :: r
    integer :: i
    r = 1
    do i = 1, size(v)
      r = r * v(i)
    end do
  end function product_@k@

  !> The first operand is conjugated.
  pure function dot_@k@(a, b) result(r)
    @t@, intent(in) :: a(:), b(:)
    @t@ :: r, s(16)
    integer :: i
    if (size(a) >= worth_a_call .and. associated(fast%dot_@k@)) then
      call fast%dot_@k@(size(a, kind=c_intptr_t), a, b, r)
      return
    end if
    s = 0
    do i = 1, size(a)
      s(iand(i - 1, 15) + 1) = s(iand(i - 1, 15) + 1) + @conjugate@(a(i)) * b(i)
    end do
    r = joined_@k@(s)
  end function dot_@k@

  pure function multiply_@k@(a, b) result(c)
    @t@, intent(in) :: a(:, :), b(:, :)
    @t@ :: c(size(a, 1), size(b, 2))
    integer :: i, j, k
    c = 0
    if (size(a) >= worth_a_call .and. associated(fast%multiply_@k@)) then
      call fast%multiply_@k@(size(a, 1, c_intptr_t), size(b, 2, c_intptr_t), size(b, 1, c_intptr_t), a, b, c)
      return
    end if
    do j = 1, size(b, 2)
      do k = 1, size(b, 1)
        do i = 1, size(a, 1)
          c(i, j) = c(i, j) + a(i, k) * b(k, j)
        end do
      end do
    end do
  end function multiply_@k@

!@ end
  !> The Euclidean norm. Where the largest leading part, with exponent e, lies outside 2**-200 to 2**401, the elements
  !> are first scaled by 2**(-e): squares would overflow or lose bits of lo.
  pure function length(v) result(r)
    type(real16), intent(in) :: v(:)
    type(real16) :: r
    integer, parameter :: infinite = 2047, bias = 1023
    integer :: field, e, i
    if (size(v) >= worth_a_call .and. associated(fast%norm_q)) then
      call fast%norm_q(size(v, kind=c_intptr_t), v, r)
      return
    end if
    r = 0
    if (size(v) == 0) return
    field = 0
    do i = 1, size(v)
      field = max(field, int(ibits(transfer(v(i)%parts%hi, 0_c_int64_t), 52, 11)))
    end do
    e = field - bias
    if (field < infinite .and. (e < -200 .or. e > 400) .and. any(v%parts%hi /= 0)) then
      r = scale(sqrt(dot_q(scale(v, -e), scale(v, -e))), e)
    else
      r = sqrt(dot_q(v, v))
    end if
  end function length

  pure function largest(v) result(r)
    type(real16), intent(in) :: v(:)
    type(real16) :: r
    r = -huge(r)
    if (size(v) > 0) r = v(extreme(v, greater))
  end function largest

  pure function smallest(v) result(r)
    type(real16), intent(in) :: v(:)
    type(real16) :: r
    r = huge(r)
    if (size(v) > 0) r = v(extreme(v, less))
  end function smallest

  !> Where among the elements kept the first or, from the back, the last extreme stands; 0 where none is kept.
  !> order is that of a better element to the one so far. A NaN counts only where there is nothing else.
  pure function extreme(v, order, keep, back) result(place)
    type(real16), intent(in) :: v(:)
    integer(c_int32_t), intent(in) :: order
    logical, intent(in), optional :: keep(:)
    logical, intent(in), optional :: back
    integer :: place, i
    integer(c_int32_t) :: found
    logical :: last, masked
    last = .false.
    if (present(back)) last = back
    masked = .false.
    if (present(keep)) masked = .not. all(keep)
    if (.not. masked .and. size(v) >= worth_a_call .and. associated(fast%extreme_q)) then
      place = int(fast%extreme_q(size(v, kind=c_intptr_t), v, merge(1_c_int, 0_c_int, order == less), &
          merge(1_c_int, 0_c_int, last)))
      return
    end if
    place = 0
    do i = 1, size(v)
      if (masked) then
        if (.not. keep(i)) cycle
      end if
      if (place == 0) then
        place = i
      else
        found = zorvik_qcmp(v(i), v(place))
        if (found == order .or. (last .and. found == equal) .or. (isnan(v(place)) .and. .not. isnan(v(i)))) place = i
      end if
    end do
  end function extreme

  !> Where among the elements kept the first or, from the back, the last that is equal to a value stands, or 0.
  pure function occurrence(v, value, keep, back) result(place)
    type(real16), intent(in) :: v(:), value
    logical, intent(in) :: keep(:)
    logical, intent(in), optional :: back
    integer :: place, i
    logical :: last
    last = .false.
    if (present(back)) last = back
    place = 0
    do i = 1, size(v)
      if (.not. keep(i) .or. v(i) /= value) cycle
      place = i
      if (.not. last) return
    end do
  end function occurrence

  !> The subscripts of an element, all from 1 on; zeros for a place of 0.
  pure function subscripts(place, extents) result(r)
    integer, intent(in) :: place, extents(:)
    integer :: r(size(extents)), i, rest
    r = 0
    if (place == 0) return
    rest = place - 1
    do i = 1, size(extents)
      r(i) = mod(rest, extents(i)) + 1
      rest = rest / extents(i)
    end do
  end function subscripts
