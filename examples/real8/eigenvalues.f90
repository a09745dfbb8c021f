!> All eigenvalues and eigenvectors of a dense symmetric matrix: Householder's reduction to tridiagonal form, then QL
!> with implicit shifts.
module eigenvalues
  implicit none
contains

  !> On return v holds the eigenvectors as columns, d the eigenvalues in ascending order.
  subroutine symmetric_eigen(a, d, v)
    double precision, intent(in) :: a(:, :)
    double precision, intent(out) :: d(:), v(:, :)
    double precision :: e(size(d))
    call tridiagonal(a, d, e, v)
    call implicit_ql(d, e, v)
    call sort(d, v)
  end subroutine symmetric_eigen

  !> a = v T v**T, with the diagonal d and the subdiagonal e(2:) of T.
  subroutine tridiagonal(a, d, e, v)
    double precision, intent(in) :: a(:, :)
    double precision, intent(out) :: d(:), e(:), v(:, :)
    double precision :: work(size(a, 1), size(a, 2)), u(size(d)), p(size(d)), norm, h
    integer :: n, i, k
    n = size(d)
    work = a
    v = 0
    do i = 1, n
      v(i, i) = 1
    end do
    e = 0
    do k = 1, n - 2
      ! The reflection I - u u**T / h takes column k below the subdiagonal to zero.
      norm = dsqrt(sum(work(k + 1:n, k)**2))
      if (norm == 0d0) cycle
      u = 0
      u(k + 1:n) = work(k + 1:n, k)
      u(k + 1) = u(k + 1) + dsign(norm, u(k + 1))
      h = dot_product(u, u)/2
      p = matmul(work, u)/h
      p = p - u*(dot_product(u, p)/(2*h))
      do i = 1, n
        work(:, i) = work(:, i) - u*p(i) - p*u(i)
      end do
      p = matmul(v, u)/h
      do i = k + 1, n
        v(:, i) = v(:, i) - p*u(i)
      end do
    end do
    do i = 1, n
      d(i) = work(i, i)
      if (i > 1) e(i) = work(i, i - 1)
    end do
  end subroutine tridiagonal

  subroutine implicit_ql(d, e, v)
    double precision, intent(inout) :: d(:), e(:), v(:, :)
    double precision :: b, c, f, g, p, r, s, column(size(d))
    integer :: n, i, l, m, sweep
    n = size(d)
    e(1:n - 1) = e(2:n)
    e(n) = 0.0d0
    do l = 1, n
      do sweep = 1, 60
        do m = l, n - 1
          if (dabs(e(m)) <= epsilon(d)*(dabs(d(m)) + dabs(d(m + 1)))/2) exit
        end do
        if (m == l) exit
        g = (d(l + 1) - d(l))/(2.0d0*e(l))
        r = hypot(g, 1.0d0)
        g = d(m) - d(l) + e(l)/(g + dsign(r, g))
        s = 1.0d0
        c = 1.0d0
        p = 0.0d0
        do i = m - 1, l, -1
          f = s*e(i)
          b = c*e(i)
          r = hypot(f, g)
          e(i + 1) = r
          s = f/r
          c = g/r
          g = d(i + 1) - p
          r = (d(i) - g)*s + 2.0d0*c*b
          p = s*r
          d(i + 1) = g + p
          g = c*r - b
          column = v(:, i + 1)
          v(:, i + 1) = s*v(:, i) + c*column
          v(:, i) = c*v(:, i) - s*column
        end do
        d(l) = d(l) - p
        e(l) = g
        e(m) = 0.0d0
      end do
    end do
  end subroutine implicit_ql

  subroutine sort(d, v)
    double precision, intent(inout) :: d(:), v(:, :)
    double precision :: column(size(d)), value
    integer :: i, k
    do i = 1, size(d) - 1
      k = i - 1 + minloc(d(i:), dim=1)
      value = d(i)
      d(i) = d(k)
      d(k) = value
      column = v(:, i)
      v(:, i) = v(:, k)
      v(:, k) = column
    end do
  end subroutine sort
end module eigenvalues

program spectrum
  use eigenvalues
  implicit none
  integer, parameter :: n = 40
  double precision :: a(n, n), v(n, n), d(n), exact(n), pi
  integer :: i, j
  ! min(i, j): the inverse of a second difference, whose eigenvalues are known.
  do j = 1, n
    do i = 1, n
      a(i, j) = dble(min(i, j))
    end do
  end do
  call symmetric_eigen(a, d, v)
  pi = 4*datan(1.0d0)
  do i = 1, n
    exact(n + 1 - i) = 0.25d0/dsin((2*i - 1)*pi/(2*(2*n + 1)))**2
  end do
  print *, 'largest', d(n), d(n)/exact(n) - 1
  print *, 'all', sum(d), maxval(dabs(d - exact))/exact(n)
  print *, 'vectors', v(n, n)**2, maxval(dabs(matmul(transpose(v), v) - identity(n)))
  print *, 'residual', norm2(v(:, 1)), maxval(dabs(matmul(a, v) - v*spread(d, 1, n)))/exact(n)

contains

  function identity(n) result(one)
    integer, intent(in) :: n
    double precision :: one(n, n)
    integer :: i
    one = 0
    do i = 1, n
      one(i, i) = 1
    end do
  end function identity
end program spectrum
