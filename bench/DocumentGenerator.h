//
// DocumentGenerator.h
//
// Large, realistic keymap documents for the benchmarks, written straight as
// JSON text in the document format, so that they do not depend on which item
// classes the library under test has.
//

#ifndef ZUNO_KEYMAPMANAGER_BENCH_DOCUMENTGENERATOR_H
#define ZUNO_KEYMAPMANAGER_BENCH_DOCUMENTGENERATOR_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace benchdocs {

/// Every item type name of the format, in the order of the type list.
extern const std::array<const char*, 18> kItemTypes;

/// The seed the benchmarks use, so every run measures the same text.
constexpr std::uint64_t kDefaultSeed = 0x5eed2000u;

/// A document with `itemCount` items spread evenly over all item types, with
/// values away from the defaults, second keys on about a third of the
/// combinable items, both sides of every pair item set, macro scripts in
/// running text, and a non-default info and param. Compact (no indentation),
/// as a host hands it in.
std::string GenerateDocument(std::size_t itemCount, std::uint64_t seed = kDefaultSeed);

}  // namespace benchdocs

#endif  // ZUNO_KEYMAPMANAGER_BENCH_DOCUMENTGENERATOR_H
