// What no program that writes or reads a given workbook can do without, measured on the workbook's own bytes: for a
// package the inflating, one pass of memchr, the printing of its numbers and the deflating; for a compound file one
// look at every byte and one copy. The tables of performance set whole programs beside it.
#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engine/xlerror.h"
#include "xml/deflater.h"
#include "xml/zip_reader.h"

namespace {

using namespace rubrica;

constexpr int kRuns = 5;

// The results of the work that is measured end here, so that none of it can be left out.
volatile std::uint64_t sink = 0;

// Of the fastest run: the machine's other work only adds.
template <class Work>
double secondsOf(Work&& work) {
  double best = 0;
  for (int run = 0; run < kRuns; ++run) {
    const auto start = std::chrono::steady_clock::now();
    sink = sink + work();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    best = run == 0 ? taken.count() : std::min(best, taken.count());
  }
  return best;
}

std::uint64_t countTags(std::string_view text) {
  std::uint64_t count = 0;
  const char* end = text.data() + text.size();
  for (const char* at = text.data(); at < end; ++at, ++count) {
    at = static_cast<const char*>(std::memchr(at, '<', static_cast<std::size_t>(end - at)));
    if (at == nullptr) break;
  }
  return count;
}

// What stands in <v> elements and is a number.
std::vector<double> numbersOf(std::string_view text) {
  constexpr std::string_view kTag = "<v>";
  std::vector<double> numbers;
  for (std::size_t at = text.find(kTag); at != text.npos; at = text.find(kTag, at)) {
    at += kTag.size();
    double number = 0;
    if (std::from_chars(text.data() + at, text.data() + text.size(), number).ec == std::errc{}) {
      numbers.push_back(number);
    }
  }
  return numbers;
}

std::uint64_t printAll(const std::vector<double>& numbers) {
  std::array<char, 32> text;
  std::uint64_t size = 0;
  for (const double number : numbers) {
    const char* end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
    size += static_cast<std::uint64_t>(end - text.data());
  }
  return size;
}

void measurePackage(std::span<const std::byte> file) {
  ZipReader listed(file);
  std::string text;
  for (const ZipEntry& entry : listed.entries()) text += listed.read(entry).view();
  const std::vector<double> numbers = numbersOf(text);
  const double inflate = secondsOf([&] {
    ZipReader archive(file);
    std::uint64_t size = 0;
    for (const ZipEntry& entry : archive.entries()) size += archive.read(entry).size;
    return size;
  });
  const double scan = secondsOf([&] { return countTags(text); });
  const double print = secondsOf([&] { return printAll(numbers); });
  Deflater deflater;
  const double deflate = secondsOf([&] {
    std::ostream(&deflater).write(text.data(), static_cast<std::streamsize>(text.size()));
    return deflater.finish().compressedSize;
  });
  std::printf("textBytes=%zu numbers=%zu inflate=%.6f scan=%.6f print=%.6f deflate=%.6f\n", text.size(), numbers.size(),
              inflate, scan, print, deflate);
}

void measureCompoundFile(std::span<const std::byte> file) {
  const double touch = secondsOf([&] {
    std::uint64_t sum = 0;
    for (const std::byte byte : file) sum += static_cast<std::uint8_t>(byte);
    return sum;
  });
  const double copy = secondsOf([&] {
    const std::vector<std::byte> copied(file.begin(), file.end());
    return static_cast<std::uint64_t>(copied.back());
  });
  std::printf("touch=%.6f copy=%.6f\n", touch, copy);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: floor FILE.xlsx|FILE.xls\n", stderr);
    return 2;
  }
  std::ifstream stream(argv[1], std::ios::binary);
  const std::vector<char> bytes((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
  if (bytes.empty()) {
    std::fprintf(stderr, "floor: %s can't be read\n", argv[1]);
    return 1;
  }
  const auto file = std::as_bytes(std::span(bytes));
  try {
    if (bytes[0] == 'P') {
      measurePackage(file);
    } else {
      measureCompoundFile(file);
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "floor: %s\n", error.what());
    return 1;
  }
  return 0;
}
