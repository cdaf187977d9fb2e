#pragma once

#include <string>
#include <string_view>

// The folder of feature files, written by the extraction program and read by the similarity program. Every file holds
// one entry for each font in the order of "ids.bin"; numbers are little-endian.
namespace kerval::helpers::featurefolder {

// N 32-bit font ids. Its presence tells that the folder is complete, so it is put in place last.
constexpr std::string_view idsFile = "ids.bin";

// 61 floats: the largest value of each component.
constexpr std::string_view maximumsFile = "maximums.bin";

// N 32-bit integers each.
constexpr std::string_view hwiFile = "features_hwi.bin";
constexpr std::string_view hweFile = "features_hwe.bin";
constexpr std::string_view hheFile = "features_hhe.bin";

// N bytes: 1 for a serif face.
constexpr std::string_view serifFile = "features_ser.bin";

// 3 32-bit integers for each font: its smart-choice scores (all, body, headline). A set may lack this file.
constexpr std::string_view scoresFile = "features_sc.bin";

// One line for each font: PostScript name, "||", class name.
constexpr std::string_view infoFile = "features_info.bin";
constexpr std::string_view infoSeparator = "||";

// The characters that have a file of their own, by ascending code: 48-57, 65-90 and 97-122.
constexpr std::string_view characters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

// "features_<code>.bin": N records of 61 floats (244 bytes).
std::string characterFile(unsigned char code);

} // namespace kerval::helpers::featurefolder
