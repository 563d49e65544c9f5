#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/// A fuzz target is one source with these two functions. It is linked with Driver.cpp, or, by a
/// compiler that has it, with libFuzzer, which calls the first one alone.

/// Feeds one input to what is under test. Whatever goes wrong ends the process.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

/// The inputs from which the driver makes others.
std::span<const std::string_view> fuzzSeeds();
