c     Adaptive quadrature: the interval of the largest error is halved
c     until the sum of the errors is small enough. Seven-point Gauss and
c     fifteen-point Kronrod rules.
c
c     f       integrand, a function of one argument
c     a, b    ends of the interval
c     eps     bound of the error, relative to the integral
c     result  the integral;  error  the estimate of its error
c     ier     0, or 1 where limit intervals were not enough
      subroutine adapt(f, a, b, eps, result, error, ier)
      implicit double precision (a-h, o-z)
      external f
      parameter (limit = 2000)
      parameter (zero = 0.0d0, half = 0.5d0)
      dimension al(limit), bl(limit), rl(limit), el(limit)
      ier = 0
      n = 1
      al(1) = a
      bl(1) = b
      call rule(f, a, b, rl(1), el(1))
   10 continue
      result = zero
      error = zero
      worst = zero
      k = 1
      do 20 i = 1, n
        result = result + rl(i)
        error = error + el(i)
        if (el(i) .le. worst) go to 20
        worst = el(i)
        k = i
   20 continue
      if (error .le. dmax1(eps, 4.0d0*epsilon(eps))*dabs(result)) return
      if (n .eq. limit) then
        ier = 1
        return
      end if
      n = n + 1
      al(n) = half*(al(k) + bl(k))
      bl(n) = bl(k)
      bl(k) = al(n)
      call rule(f, al(k), bl(k), rl(k), el(k))
      call rule(f, al(n), bl(n), rl(n), el(n))
      go to 10
      end

c     The rule of 15 points on one interval, and how far it is from that
c     of 7, scaled as the difference of rules of these orders is.
      subroutine rule(f, a, b, result, error)
      implicit double precision (a-h, o-z)
      external f
      dimension x(7), wk(8), wg(4)
      save x, wk, wg
      data x / 0.991455371120812639206854697526328517d0,
     1 0.949107912342758524526189684047851262d0,
     2 0.864864423359769072789712788640926201d0,
     3 0.741531185599394439863864773280788407d0,
     4 0.586087235467691130294144838258729598d0,
     5 0.405845151377397166906606412076961463d0,
     6 0.207784955007898467600689403773244913d0 /
      data wk / 0.022935322010529224963732008058969592d0,
     1 0.0630920926299785532907006631892042867d0,
     2 0.104790010322250183839876322541518017d0,
     3 0.14065325971552591874518959051023792d0,
     4 0.169004726639267902826583426598550284d0,
     5 0.190350578064785409913256402421013683d0,
     6 0.204432940075298892414161999234649085d0,
     7 0.209482141084727828012999174891714264d0 /
      data wg / 0.129484966168869693270611432679082018d0,
     1 0.279705391489276667901467771423779582d0,
     2 0.381830050505118944950369775488975134d0,
     3 0.417959183673469387755102040816326531d0 /
      common /count/ neval
      c = 0.5d0*(a + b)
      h = 0.5d0*(b - a)
      fc = f(c)
      rk = wk(8)*fc
      rg = wg(4)*fc
      ra = wk(8)*dabs(fc)
      do 10 i = 1, 7
        d = h*x(i)
        f1 = f(c - d)
        f2 = f(c + d)
        rk = rk + wk(i)*(f1 + f2)
        ra = ra + wk(i)*(dabs(f1) + dabs(f2))
        if (mod(i, 2) .eq. 0) rg = rg + wg(i/2)*(f1 + f2)
   10 continue
      result = rk*h
      ra = ra*dabs(h)
      error = dabs((rk - rg)*h)
      if (ra .ne. 0.0d0 .and. error .ne. 0.0d0)
     1  error = ra*dmin1(1.0d0, (2.0d2*error/ra)**1.5d0)
      neval = neval + 15
      return
      end

      double precision function f1(x)
      implicit double precision (a-h, o-z)
      f1 = 1.0d0/(1.0d0 + x**2)
      return
      end

      double precision function f2(x)
      implicit double precision (a-h, o-z)
      f2 = dexp(-x)*dsin(10.0d0*x)
      return
      end

      double precision function f3(x)
      implicit double precision (a-h, o-z)
      f3 = dsqrt(x)*dlog(x)
      return
      end

      program quadrature
      implicit double precision (a-h, o-z)
      external f1, f2, f3
      common /count/ neval
      eps = epsilon(eps)
      neval = 0
      call adapt(f1, 0.0d0, 1.0d0, eps, r, e, ier)
      print *, 'arctangent', r, 4.0d0*r - 4.0d0*datan(1.0d0)
      call adapt(f2, 0.0d0, 3.0d0, eps, r, e, ier)
      exact = 1.0d1 - dexp(-3.0d0)*(dsin(3.0d1) + 1.0d1*dcos(3.0d1))
      print *, 'oscillation', r, r - exact/dble(101)
      call adapt(f3, 0.0d0, 1.0d0, eps, r, e, ier)
      print *, 'singularity', r, r + 4.0d0/9.0d0
      end
