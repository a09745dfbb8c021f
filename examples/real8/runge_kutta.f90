!> An explicit Runge-Kutta method of order 8 in 11 stages (Cooper and Verner), with the step chosen from the difference
!> of one step and two of half its size.
module runge_kutta
  implicit none
  private
  public :: dp, integrate
  integer, parameter :: dp = kind(1.0d0)
  integer, parameter :: stages = 11
  abstract interface
    subroutine derivative(t, y, dy)
      import
      real(dp), intent(in) :: t, y(:)
      real(dp), intent(out) :: dy(:)
    end subroutine derivative
  end interface
  type :: tableau
    real(dp) :: a(stages, stages), b(stages), c(stages)
  end type tableau

contains

  !> Takes y from t to t_end with local errors of at most tol, relative to the size of y.
  subroutine integrate(f, t, t_end, y, tol, steps)
    procedure(derivative) :: f
    real(dp), intent(inout) :: t, y(:)
    real(dp), intent(in) :: t_end, tol
    integer, intent(out) :: steps
    type(tableau) :: method
    real(dp) :: h, error, factor
    real(dp), dimension(size(y)) :: coarse, middle, fine
    call set_up(method)
    steps = 0
    h = (t_end - t)/64
    do while (t < t_end)
      h = min(h, t_end - t)
      call step(method, f, t, y, h, coarse)
      call step(method, f, t, y, h/2, middle)
      call step(method, f, t + h/2, middle, h/2, fine)
      error = maxval(abs(fine - coarse))/255/max(maxval(abs(y)), 1.0_dp)
      if (error <= tol) then
        t = t + h
        y = fine + (fine - coarse)/255
        steps = steps + 1
      end if
      factor = 5
      if (error > 0.0_dp) factor = 0.9_dp*(tol/error)**(1.0_dp/9)
      h = h*min(5.0_dp, max(0.2_dp, factor))
    end do
  end subroutine integrate

  subroutine step(method, f, t, y, h, y_new)
    type(tableau), intent(in) :: method
    procedure(derivative) :: f
    real(dp), intent(in) :: t, y(:), h
    real(dp), intent(out) :: y_new(:)
    real(dp) :: k(size(y), stages)
    integer :: i
    call f(t, y, k(:, 1))
    do i = 2, stages
      call f(t + method%c(i)*h, y + h*matmul(k(:, 1:i - 1), method%a(i, 1:i - 1)), k(:, i))
    end do
    y_new = y + h*matmul(k, method%b)
  end subroutine step

  subroutine set_up(m)
    type(tableau), intent(out) :: m
    real(dp) :: s
    s = sqrt(21.0_dp)
    m%a = 0.0_dp
    m%a(2, 1) = 0.5_dp
    m%a(3, 1:2) = 0.25_dp
    m%a(4, 1:3) = [1/real(7, dp), (-7 - 3*s)/98, (21 + 5*s)/49]
    m%a(5, 1:4) = [(11 + s)/84, 0*s, (18 + 4*s)/63, (21 - s)/252]
    m%a(6, 1:5) = [(5 + s)/48, 0*s, (9 + s)/36, (-231 + 14*s)/360, (63 - 7*s)/80]
    m%a(7, 1:6) = [(10 - s)/42, 0*s, (-432 + 92*s)/315, (633 - 145*s)/90, (-504 + 115*s)/70, (63 - 13*s)/35]
    m%a(8, [1, 5, 6, 7]) = [1/real(14, dp), (14 - 3*s)/126, (13 - 3*s)/63, 1/real(9, dp)]
    m%a(9, [1, 5, 6, 7, 8]) = [1/real(32, dp), (91 - 21*s)/576, 11/real(72, dp), (-385 - 75*s)/1152, (63 + 13*s)/128]
    m%a(10, [1, 5, 6, 7, 8, 9]) = [1/real(14, dp), 1/real(9, dp), (-733 - 147*s)/2205, (515 + 111*s)/504, &
        (-51 - 11*s)/56, (132 + 28*s)/245]
    m%a(11, 5:10) = [(-42 + 7*s)/18, (-18 + 28*s)/45, (-273 - 53*s)/72, (301 + 53*s)/72, (28 - 28*s)/45, (49 - 7*s)/18]
    m%b = 0.0_dp
    m%b([1, 8, 9, 10, 11]) = [9, 49, 64, 49, 9]/real(180, dp)
    m%c = sum(m%a, dim=2)
  end subroutine set_up
end module runge_kutta

program orbit
  use runge_kutta
  implicit none
  real(dp) :: t, y(4), mean, anomaly, change
  real(dp), parameter :: eccentricity = 0.25_dp
  integer :: steps, i

  ! An ellipse of Kepler, from its pericentre on.
  t = 0
  y = [1 - eccentricity, 0.0_dp, 0.0_dp, sqrt((1 + eccentricity)/(1 - eccentricity))]
  call integrate(attraction, t, 1.0_dp, y, epsilon(t)/4, steps)
  mean = 1
  anomaly = mean
  do i = 1, 50
    change = (anomaly - eccentricity*sin(anomaly) - mean)/(1 - eccentricity*cos(anomaly))
    anomaly = anomaly - change
    if (abs(change) < 10*epsilon(change)) exit
  end do
  print *, 'x', y(1), y(1) - (cos(anomaly) - eccentricity)
  print *, 'y', y(2), y(2) - sqrt(1 - eccentricity**2)*sin(anomaly)

  ! The logistic equation, whose solution through 1/2 is 1/(1 + exp(-t)).
  t = 0
  y = 0.5_dp
  call integrate(growth, t, 2.0_dp, y, epsilon(t)/4, steps)
  print *, 'growth', y(4), y(4) - 1/(1 + exp(-real(2, dp)))

contains

  subroutine attraction(t, y, dy)
    real(dp), intent(in) :: t, y(:)
    real(dp), intent(out) :: dy(:)
    real(dp) :: r
    r = hypot(y(1), y(2)) + 0*t
    dy(1:2) = y(3:4)
    dy(3:4) = -y(1:2)/r**3
  end subroutine attraction

  subroutine growth(t, y, dy)
    real(dp), intent(in) :: t, y(:)
    real(dp), intent(out) :: dy(:)
    dy = y*(1 - y) + 0*t
  end subroutine growth
end program orbit
