// Prints which parts of the first pages of two page-capture files are paired, and why.

#include <iostream>

#include "capture/RvfReader.h"
#include "compare/DrawListMatch.h"
#include "storage/DiskFile.h"
#include "text/NativeText.h"

struct Printer final : rvf::PairingObserver {
  void paired(const rvf::Pairing& pair) override {
    std::cout << "first " << pair.first << ", second " << pair.second << ", bits " << pair.reasons
              << '\n';
  }
  bool enterGroup(rvf::i32, rvf::i32) override { return true; }
  void leaveGroup() override {}
};

struct FirstPage {
  explicit FirstPage(const char* path) {
    if (file.Open(rvf::fromNative(path), rvf::open_flags::kRead, rvf::FileContent::kBinary))
      reader.load(file);
    if (reader.valid()) reader.loadCurrentPage();
  }
  rvf::eDiskFile file;
  rvf::CompareContext context;
  rvf::RvfReader reader{context, false};
};

int main(int argc, char** argv) {
  if (argc != 3) return 1;
  const FirstPage first(argv[1]), second(argv[2]);
  Printer printer;
  const rvf::DiffFlags bits =
      rvf::matchLists(first.context.pageList, second.context.pageList, {}, &printer);
  std::cout << "in all " << bits << '\n';
  return first.reader.valid() && second.reader.valid() ? 0 : 1;
}
