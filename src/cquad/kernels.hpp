#pragma once

// The COMPLEX*32 kernels.

#include "cquad/cquad.hpp"

namespace zrt::cquads {
ZRT_IN_EACH_MODEL(cquad product(const cquad& x, const cquad& y);
                  cquad quotient(const cquad& x, const cquad& y);
                  quad * modulus(quad * result, const cquad& z);
                  cquad principal_root(const cquad& z); cquad exponential(const cquad& z);
                  cquad logarithm(const cquad& z); cquad sine(const cquad& z);
                  cquad cosine(const cquad& z); cquad integer_power(const cquad& z, std::int32_t n);
                  cquad power(const cquad& z, const cquad& w);)
}
