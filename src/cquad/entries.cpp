// COMPLEX*32 as compiled code calls it.

#include "entries.hpp"

#include "cquad/kernels.hpp"

namespace zrt::cquads {

ZRT_VALUE(cquad*, cqmul)(cquad* result, cquad x, cquad y) {
  const both_joined o(x, y);
  return put(result, ZRT_ORDINARY_CALL(product, o.first(), o.second()));
}
ZRT_VALUE(cquad*, cqdiv)(cquad* result, cquad x, cquad y) {
  const both_joined o(x, y);
  return put(result, ZRT_ORDINARY_CALL(quotient, o.first(), o.second()));
}
ZRT_VALUE(cquad*, csqrtl)(cquad* result, cquad z) {
  return put(result, ZRT_ORDINARY_CALL(principal_root, joined(z)));
}
ZRT_VALUE(cquad*, cexpl)(cquad* result, cquad z) {
  return put(result, ZRT_ORDINARY_CALL(exponential, joined(z)));
}
ZRT_VALUE(cquad*, clogl)(cquad* result, cquad z) {
  return put(result, ZRT_ORDINARY_CALL(logarithm, joined(z)));
}
ZRT_VALUE(cquad*, csinl)(cquad* result, cquad z) {
  return put(result, ZRT_ORDINARY_CALL(sine, joined(z)));
}
ZRT_VALUE(cquad*, ccosl)(cquad* result, cquad z) {
  return put(result, ZRT_ORDINARY_CALL(cosine, joined(z)));
}
ZRT_VALUE(cquad*, cqtoi)(cquad* result, cquad z, std::int32_t n) {
  return put(result, ZRT_ORDINARY_CALL(integer_power, joined(z), n));
}
ZRT_VALUE(cquad*, cpowl)(cquad* result, cquad z, cquad w) {
  return put(result, ZRT_ORDINARY_CALL(power, joined(z), joined(w)));
}
ZRT_VALUE(quad*, cabsl)(quad* result, cquad z) {
  return ZRT_ORDINARY_CALL(modulus, result, joined(z));
}

}  // namespace zrt::cquads
