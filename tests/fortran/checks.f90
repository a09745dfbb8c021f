! What the Fortran tests count with: one line for each failure, and the sums at the end.
module checks
  implicit none
  private
  public :: check, report
  integer :: failures = 0, made = 0

contains

  subroutine check(right, what)
    logical, intent(in) :: right
    character(*), intent(in) :: what
    made = made + 1
    if (right) return
    failures = failures + 1
    print '(2a)', 'failed: ', what
  end subroutine check

  ! Stops with an error after a failure, and where fewer than `least` checks were made.
  subroutine report(least)
    integer, intent(in) :: least
    print '(i0, a, i0, a)', made - failures, ' passed, ', failures, ' failed'
    if (failures > 0 .or. made < least) stop 1
  end subroutine report

end module checks
