#include <gtest/gtest.h>

#include "output/postprocessor/PostProcessor.h"
#include "output/postprocessor/PostProcessorTemplates.h"

namespace isolith {
namespace {

// The groups of a template for a move from (x0, y0, z0) to (x1, y1, z1).
std::string Groups(std::string_view pattern, int prevType, int newType, double lastV, double newV,
                   double x0, double x1, double y0 = 0, double y1 = 0, double z0 = 0,
                   double z1 = 0) {
  return ApplyOptionalGroups(pattern, prevType, newType, lastV, newV, x0, x1, y0, y1, z0, z1);
}

TEST(PostProcessorTemplates, OptionalGroupsKeepOnlyWhatChanged) {
  const std::string feed = TPostProcessor{}.FeedXYZ;
  // The first group lacks axis tags, so a change of motion type writes it.
  EXPECT_EQ(Groups(feed, 0, 1, 2, 2, 10, 10), "G01 F<V>");
  EXPECT_EQ(Groups(feed, 1, 1, 2, 2, 10, 20), "G01 X<X>");
  EXPECT_EQ(Groups(feed, 1, 1, 1, 2, 10, 10, 5, 6, 0, 0.1), "G01 F<V> Y<Y> Z<Z>");
  EXPECT_EQ(Groups(feed, 1, 1, 2, 2, 10, 10), "G01");

  // Text without brackets stays whole for every move.
  EXPECT_EQ(Groups("G01 X<X> Y<Y>", 1, 1, 2, 2, 0, 1), "G01 X<X> Y<Y>");
  EXPECT_EQ(Groups("G01 X<X> Y<Y>", 0, 1, 1, 2, 0, 0, 0, 1), "G01 X<X> Y<Y>");

  // A later axis group does not follow the type change; only the first group may.
  EXPECT_EQ(Groups("G01[ F<V>][ X<X>]", 0, 1, 2, 2, 4, 4, 0, 1), "G01 F<V>");
  // A first group with all six tags is no change group.
  EXPECT_EQ(Groups("[<X><Y><Z><V><R><A>]", 0, 1, 2, 2, 1, 1), "");
  EXPECT_EQ(Groups("[ X<X>]", 0, 1, 2, 2, 1, 1), " X<X>");

  // R and A notes carry on into the following groups; tags of two letters note nothing.
  EXPECT_EQ(Groups("G[ F<V>][ P<R>][ Q]", 1, 1, 2, 2, 0, 1), "G P<R> Q");
  EXPECT_EQ(Groups("G[ F<V>][ P<R>][ Q]", 1, 1, 2, 2, 0, 0, 0, 0, 0, 1), "G");
  EXPECT_EQ(Groups("G[ F<V>][ I<CX>]", 1, 1, 2, 2, 0, 1), "G");
  // Tags in lower case count; an unclosed group runs to the end.
  EXPECT_EQ(Groups("G00[ X<x>]", 0, 0, 2, 2, 0, 1), "G00 X<x>");
  EXPECT_EQ(Groups("G00 X<X>[ Y<Y> Z<Z>", 0, 0, 2, 2, 0, 1), "G00 X<X>");
  EXPECT_EQ(Groups("G00 X<X>[ Y<Y> Z<Z>", 0, 0, 2, 2, 0, 1, 0, 1), "G00 X<X> Y<Y> Z<Z>");
  // A "]" outside a group stays as text.
  EXPECT_EQ(Groups("A]B", 0, 0, 2, 2, 0, 0), "A]B");
}

TEST(PostProcessorTemplates, NumberFormatsAsTextAndBack) {
  const TNumberFormat xy = ParseNumberFormat("0.00");
  EXPECT_EQ(xy.pad, ' ');
  EXPECT_EQ(xy.leftDigits, 1);
  EXPECT_EQ(xy.decimalChar, '.');
  EXPECT_EQ(xy.rightDigits, 2);
  const TNumberFormat zeros = ParseNumberFormat("0000,0");
  EXPECT_EQ(zeros.pad, '0');
  EXPECT_EQ(zeros.leftDigits, 4);
  EXPECT_EQ(zeros.decimalChar, ',');
  EXPECT_EQ(zeros.rightDigits, 1);
  const TNumberFormat blanks = ParseNumberFormat("   0");
  EXPECT_EQ(blanks.pad, ' ');
  EXPECT_EQ(blanks.leftDigits, 4);
  EXPECT_EQ(blanks.rightDigits, 0);
  EXPECT_EQ(ParseNumberFormat("").leftDigits, 1);
  EXPECT_EQ(ParseNumberFormat(std::string(40, '0') + "." + std::string(40, '0')).rightDigits, 12);

  for (const char* text : {"0.00", "0", "0000,0", "   0", "**0.000", "000"})
    EXPECT_EQ(NumberFormatText(ParseNumberFormat(text)), text) << text;
  EXPECT_EQ(NumberFormatText({'0', 0, '.', 0}), "0");
}

TEST(PostProcessorTemplates, TagValuesFollowTheirFormat) {
  const TNumberFormat xy{' ', 1, '.', 2};
  EXPECT_EQ(FormatTagValue(10, xy, true, false), "10");
  EXPECT_EQ(FormatTagValue(10, xy, false, false), "10.00");
  EXPECT_EQ(FormatTagValue(-0.1, xy, true, false), "-0.1");
  EXPECT_EQ(FormatTagValue(0.125, xy, false, false), "0.12");  // as printf rounds it
  EXPECT_EQ(FormatTagValue(1500, {' ', 1, '.', 0}, true, false), "1500");

  // Two left digits or more: a width, with the sign's place left blank, then the pad.
  EXPECT_EQ(FormatTagValue(5, {' ', 3, '.', 2}, false, false), "  5.00");
  EXPECT_EQ(FormatTagValue(5, {'0', 3, '.', 2}, false, false), "005.00");
  EXPECT_EQ(FormatTagValue(5, {'0', 3, '.', 2}, true, false), "005");
  EXPECT_EQ(FormatTagValue(7, {'0', 3, '.', 0}, true, false), "007");
  EXPECT_EQ(FormatTagValue(1234.5, {'0', 3, '.', 1}, false, false), "01234.5");
  // The decimal character of the format.
  EXPECT_EQ(FormatTagValue(1.5, {' ', 1, ',', 3}, false, false), "1,500");
  EXPECT_EQ(FormatTagValue(1.5, {' ', 1, ',', 3}, true, false), "1,5");

  // Hexa: truncated whole numbers in upper-case hexadecimal, whatever the format.
  EXPECT_EQ(FormatTagValue(255.9, xy, true, true), "FF");
  EXPECT_EQ(FormatTagValue(1200, {'0', 6, '.', 3}, false, true), "4B0");
  EXPECT_EQ(FormatTagValue(-1, xy, true, true), "FFFFFFFF");
  EXPECT_EQ(FormatTagValue(1e30, xy, true, true), "7FFFFFFF");
}

TEST(PostProcessorTemplates, SubstituteTagMatchesWholeTagsInAnyCase) {
  const TNumberFormat xy{' ', 1, '.', 2};
  std::string line = "G01 X<X> Q<x> <XX> <X";
  SubstituteTag(line, "X", 1.5, xy, true, false);
  EXPECT_EQ(line, "G01 X1.5 Q1.5 <XX> <X");

  line = "I<Cx> J<CY> <cs>";
  SubstituteTag(line, "CX", 2, xy, true, false);
  SubstituteTag(line, "cy", 3, xy, true, false);
  EXPECT_EQ(line, "I2 J3 <cs>");

  // At most nine characters between the brackets.
  line = "<ABCDEFGHI><ABCDEFGHIJ>";
  SubstituteTag(line, "ABCDEFGHI", 1, xy, true, false);
  EXPECT_EQ(line, "1<ABCDEFGHIJ>");
  line = "<ABCDEFGHIJ>";
  SubstituteTag(line, "ABCDEFGHIJ", 1, xy, true, false);
  EXPECT_EQ(line, "<ABCDEFGHIJ>");

  // A "<" that starts no tag is copied, and the scan goes on right after it.
  line = "a<b <<V>";
  SubstituteTag(line, "V", 60, {' ', 1, '.', 3}, true, false);
  EXPECT_EQ(line, "a<b <60");
}

}  // namespace
}  // namespace isolith
