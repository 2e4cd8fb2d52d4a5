//
// DocumentGenerator.h
//
// Large, realistic keymap documents for the benchmarks, written straight as
// JSON text from the library's member tables: every type and member the
// library declares, with values away from the defaults.
//

#ifndef ZUNO_KEYMAPMANAGER_BENCH_DOCUMENTGENERATOR_H
#define ZUNO_KEYMAPMANAGER_BENCH_DOCUMENTGENERATOR_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace benchdocs {

/// The seed the benchmarks use, so every run measures the same text.
constexpr std::uint64_t kDefaultSeed = 0x5eed2000u;

/// A document with `itemCount` items spread evenly over all item types, with
/// values away from the defaults, the members written only now and then
/// (second keys, tap sequences) in about a third of the items, macro scripts
/// in running text, and a non-default info and param.
std::string GenerateDocument(std::size_t itemCount, std::uint64_t seed = kDefaultSeed);

}  // namespace benchdocs

#endif  // ZUNO_KEYMAPMANAGER_BENCH_DOCUMENTGENERATOR_H
