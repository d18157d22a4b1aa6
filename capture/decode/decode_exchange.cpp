#include "capture/decode/decode_exchange.h"

namespace capture {

bool Exchange::IsLike(const Exchange& other) const {
  const bool sameTitle = block != 0 ? other.block != 0 : title == other.title && other.block == 0;
  return sameTitle && parts == other.parts && rows == other.rows;
}

}  // namespace capture
