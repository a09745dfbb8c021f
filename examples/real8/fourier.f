c     Fast Fourier transform of 2**m numbers, in place: radix 2, the
c     numbers brought into bit-reversed order first. isign = -1 for the
c     transform with exp(-2 pi i j k/n), +1 for the other, which is then
c     divided by n.
      subroutine fft(x, m, isign)
      implicit double precision (a-h, o-z)
      complex*16 x(*), w, t
      n = 2**m
      j = 1
      do 20 i = 1, n - 1
        if (i .lt. j) then
          t = x(j)
          x(j) = x(i)
          x(i) = t
        end if
        k = n/2
   10   if (k .lt. j) then
          j = j - k
          k = k/2
          go to 10
        end if
        j = j + k
   20 continue
      pi = 4.0d0*datan(1.0d0)
      le = 1
      do 50 l = 1, m
        theta = dble(isign)*pi/dble(le)
        do 40 j = 1, le
          arg = theta*dble(j - 1)
          w = dcmplx(dcos(arg), dsin(arg))
          do 30 i = j, n, 2*le
            t = w*x(i + le)
            x(i + le) = x(i) - t
            x(i) = x(i) + t
   30     continue
   40   continue
        le = 2*le
   50 continue
      if (isign .lt. 0) return
      do 60 i = 1, n
        x(i) = x(i)/dble(n)
   60 continue
      return
      end

      program fourier
      implicit double precision (a-h, o-z)
      parameter (m = 10, n = 2**m)
      complex*16 x(n), y(n), z, q
c     A damped oscillation: its transform is a geometric sum.
      z = dcmplx(0.0d0, 1.0d0)
      pi = 4.0d0*datan(1.0d0)
      q = cdexp(dcmplx(-0.01d0, 0.3d0))
      y(1) = 1.0d0
      do 10 k = 2, n
        y(k) = y(k - 1)*q
   10 continue
      do 20 k = 1, n
        x(k) = y(k)
   20 continue
      call fft(x, m, -1)
      worst = 0.0d0
      biggest = 0.0d0
      do 30 k = 1, n
        arg = 2.0d0*pi*dble(k - 1)/dble(n)
        z = (1.0d0 - y(n)*q)/(1.0d0 - q*cdexp(dcmplx(0.0d0, -arg)))
        worst = dmax1(worst, cdabs(x(k) - z))
        biggest = dmax1(biggest, cdabs(z))
   30 continue
      print *, 'zero', dreal(x(1)), worst/biggest
c     Parseval's sum, and back.
      sx = 0.0d0
      sy = 0.0d0
      do 40 k = 1, n
        sx = sx + dreal(x(k)*dconjg(x(k)))
        sy = sy + dreal(y(k))**2 + dimag(y(k))**2
   40 continue
      print *, 'energy', sy, sx/dble(n)/sy - 1.0d0
      call fft(x, m, 1)
      worst = 0.0d0
      do 50 k = 1, n
        worst = dmax1(worst, cdabs(x(k) - y(k)))
   50 continue
      print *, 'back', dimag(x(n)), worst
      end
