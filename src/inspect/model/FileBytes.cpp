#include "inspect/model/FileBytes.h"

#include <algorithm>

#include "compare/PartBytes.h"
#include "inspect/model/Digest.h"
#include "inspect/model/Trouble.h"

namespace rvf::inspect {

FileBytes::FileBytes(CaptureFile& file) : file_(file), buffer_(kChunk) {
  for (const CustomerRecord& customer : file.reader().customers) {
    for (const PageRecord& page : customer.pages) {
      if (page.filePosition >= 0) {
        boundaries_.push_back(page.filePosition);
      }
    }
  }
  boundaries_.push_back(file.reader().indexPosition);
  boundaries_.push_back(static_cast<i32>(file.file().GetLength()));
  std::ranges::sort(boundaries_);
}

ByteDigest FileBytes::bodyAt(i32 position) {
  return stretch(position, position + bodyLengthAt(position));
}

i64 FileBytes::bodyLengthAt(i32 position) {
  const auto isNext = [&](std::size_t i) {
    return i < boundaries_.size() && boundaries_[i] > position &&
           (i == 0 || boundaries_[i - 1] <= position);
  };
  // Pages are usually requested in file order.
  if (!isNext(next_) && !isNext(++next_)) {
    const auto next = std::ranges::upper_bound(boundaries_, position);
    next_ = static_cast<std::size_t>(next - boundaries_.begin());
  }
  return next_ == boundaries_.size() ? 0 : i64{boundaries_[next_]} - position;
}

ByteDigest FileBytes::stretch(i64 begin, i64 end) {
  Digest shown = Digest::lasting(), exact;
  for (i64 at = begin; at < end; at += kChunk) {
    const std::span<const std::byte> bytes = read(at, std::min(kChunk, end - at));
    shown.addBytes(bytes);
    exact.addBytes(bytes);
  }
  return {end - begin, shown.value(), exact.value()};
}

bool FileBytes::same(i64 begin, FileBytes& other, i64 otherBegin, i64 length) {
  for (i64 done = 0; done < length; done += kChunk) {
    const i64 size = std::min(kChunk, length - done);
    if (!sameBytes(read(begin + done, size), other.read(otherBegin + done, size))) {
      return false;
    }
  }
  return true;
}

std::span<const std::byte> FileBytes::read(i64 begin, i64 length) {
  eDiskFile& file = file_.file();
  const auto offset = static_cast<i32>(begin);
  if (file.Seek(offset, SeekOrigin::kStart) != offset) {
    throw Trouble(file_.path(), "cannot be read at offset " + std::to_string(begin));
  }
  const i32 count = file.Read(buffer_.data(), static_cast<i32>(length));
  return {buffer_.data(), static_cast<std::size_t>(std::max(count, 0))};
}

}  // namespace rvf::inspect
