  ! --- Vectors -------------------------------------------------------------------------------------
  ! What the array functions of all ranks come to. Sums and products go from the first element on.

  pure function sum_q(v) result(r)
    type(real16), intent(in) :: v(:)
    type(real16) :: r
    integer :: i
    r = 0
    do i = 1, size(v)
      r = r + v(i)
    end do
  end function sum_q

  pure function sum_x(v) result(r)
    type(complex32), intent(in) :: v(:)
    type(complex32) :: r
    integer :: i
    r = 0
    do i = 1, size(v)
      r = r + v(i)
    end do
  end function sum_x

  pure function product_q(v) result(r)
    type(real16), intent(in) :: v(:)
    type(real16) :: r
    integer :: i
    r = 1
    do i = 1, size(v)
      r = r * v(i)
    end do
  end function product_q

  pure function product_x(v) result(r)
    type(complex32), intent(in) :: v(:)
    type(complex32) :: r
    integer :: i
    r = 1
    do i = 1, size(v)
      r = r * v(i)
    end do
  end function product_x

  pure function dot_q(a, b) result(r)
    type(real16), intent(in) :: a(:), b(:)
    type(real16) :: r
    integer :: i
    r = 0
    do i = 1, size(a)
      r = r + a(i) * b(i)
    end do
  end function dot_q

  !> The first operand is conjugated.
  pure function dot_x(a, b) result(r)
    type(complex32), intent(in) :: a(:), b(:)
    type(complex32) :: r
    integer :: i
    r = 0
    do i = 1, size(a)
      r = r + conjg(a(i)) * b(i)
    end do
  end function dot_x

  pure function multiply_q(a, b) result(c)
    type(real16), intent(in) :: a(:, :), b(:, :)
    type(real16) :: c(size(a, 1), size(b, 2))
    integer :: i, j, k
    c = 0
    do j = 1, size(b, 2)
      do k = 1, size(b, 1)
        do i = 1, size(a, 1)
          c(i, j) = c(i, j) + a(i, k) * b(k, j)
        end do
      end do
    end do
  end function multiply_q

  pure function multiply_x(a, b) result(c)
    type(complex32), intent(in) :: a(:, :), b(:, :)
    type(complex32) :: c(size(a, 1), size(b, 2))
    integer :: i, j, k
    c = 0
    do j = 1, size(b, 2)
      do k = 1, size(b, 1)
        do i = 1, size(a, 1)
          c(i, j) = c(i, j) + a(i, k) * b(k, j)
        end do
      end do
    end do
  end function multiply_x

  !> The Euclidean norm. Where squares could overflow or lose bits of lo, the elements are first scaled by a
  !> power of two.
  pure function length(v) result(r)
    type(real16), intent(in) :: v(:)
    type(real16) :: r
    integer :: e
    r = 0
    if (size(v) == 0) return
    r = largest(abs(v))
    if (r == 0 .or. .not. ieee_is_finite(r)) return
    if (r > 1d-100 .and. r < 1d140) then
      r = sqrt(dot_q(v, v))
    else
      e = exponent(r)
      r = sqrt(dot_q(scale(v, -e), scale(v, -e)))
      r = scale(r, e)
    end if
  end function length

  pure function largest(v) result(r)
    type(real16), intent(in) :: v(:)
    type(real16) :: r
    r = -huge(r)
    if (size(v) > 0) r = v(extreme(v, greater, spread(.true., 1, size(v))))
  end function largest

  pure function smallest(v) result(r)
    type(real16), intent(in) :: v(:)
    type(real16) :: r
    r = huge(r)
    if (size(v) > 0) r = v(extreme(v, less, spread(.true., 1, size(v))))
  end function smallest

  !> Where among the elements kept the first or, from the back, the last extreme stands; 0 where none is kept.
  !> order is that of a better element to the one so far. A NaN counts only where there is nothing else.
  pure function extreme(v, order, keep, back) result(place)
    type(real16), intent(in) :: v(:)
    integer(c_int32_t), intent(in) :: order
    logical, intent(in) :: keep(:)
    logical, intent(in), optional :: back
    integer :: place, i
    integer(c_int32_t) :: found
    logical :: last
    last = .false.
    if (present(back)) last = back
    place = 0
    do i = 1, size(v)
      if (.not. keep(i)) cycle
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
