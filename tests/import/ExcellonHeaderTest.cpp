#include "import/ExcellonHeader.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "import/ExcellonReader.h"

namespace isolith {
namespace {

ExcellonHeader Header(const std::string& text) {
  std::istringstream in(text);
  return ReadExcellonHeader(in);
}

TEST(ExcellonHeader, UnitAndZeroWordsOfTheHeader) {
  // The words as the layout programs write them, in either case and with blanks.
  ExcellonHeader h = Header("M48\r\nM72\r\nINCH,TZ\r\nT01C0.0240\r\n%\r\nT01\r\nX16910Y10810\r\n");
  EXPECT_EQ(h.unit, HeaderUnit::Inch);
  EXPECT_EQ(h.zeros, HeaderZeros::TrailingKept);
  h = Header("m48\n;FILE_FORMAT=2:4\ninch, lz\nT1F00S00C0.0280\n%\nT01\nX03185Y028071\n");
  EXPECT_EQ(h.unit, HeaderUnit::Inch);
  EXPECT_EQ(h.zeros, HeaderZeros::LeadingKept);
  h = Header("M48\nMETRIC,TZ,000.000\nT1C0.300\n%\nG90\nT1\nX41.7Y-51.7\n");
  EXPECT_EQ(h.unit, HeaderUnit::Metric);
  EXPECT_EQ(h.zeros, HeaderZeros::TrailingKept);
  // The unit words of the M codes; M710 is none of them.
  EXPECT_EQ(Header("M48\nM71\n%\n").unit, HeaderUnit::Metric);
  EXPECT_EQ(Header("M48\nM70\n%\n").unit, HeaderUnit::Inch);
  EXPECT_EQ(Header("M48\nM710\n%\n").unit, HeaderUnit::Unstated);
  // A header that says only M72 leaves the zeros to the person.
  h = Header("%\nM48\nM72\nT01C0.0197\n%\nT01\nX7003Y2682\n");
  EXPECT_EQ(h.unit, HeaderUnit::Inch);
  EXPECT_EQ(h.zeros, HeaderZeros::Unstated);
  // A unit word before M48 counts; the last word of a kind stands.
  h = Header("INCH,LZ\n%\nM48\nMETRIC,TZ\n%\n");
  EXPECT_EQ(h.unit, HeaderUnit::Metric);
  EXPECT_EQ(h.zeros, HeaderZeros::TrailingKept);
}

TEST(ExcellonHeader, TheFirstHoleEndsTheHeader) {
  // Words after the first position belong to the body: a person reads the header only.
  ExcellonHeader h = Header("M48\nT1C0.8\n%\nT1\nX100Y100\nMETRIC,LZ\nM71\n");
  EXPECT_EQ(h.unit, HeaderUnit::Unstated);
  EXPECT_EQ(h.zeros, HeaderZeros::Unstated);
  // A position without a number is no hole, nor is a comment that names an axis.
  h = Header("M48\n;X1 is the first column\nXY\nINCH,TZ\n");
  EXPECT_EQ(h.unit, HeaderUnit::Inch);
  EXPECT_EQ(h.zeros, HeaderZeros::TrailingKept);
  // Empty and binary input says nothing and ends.
  EXPECT_EQ(Header("").unit, HeaderUnit::Unstated);
  std::string noise(200000, '\xff');
  noise += "\nINCH,TZ\n";
  h = Header(noise);
  EXPECT_EQ(h.unit, HeaderUnit::Unstated);  // beyond the part of the file a header can take
}

TEST(ExcellonHeader, AnswersOfThePerson) {
  ExcellonHeader h;
  EXPECT_FALSE(ZeroSuppressionAnswer(h).has_value());
  EXPECT_FALSE(MetricAnswer(h).has_value());
  h.zeros = HeaderZeros::TrailingKept;
  EXPECT_EQ(ZeroSuppressionAnswer(h), kExcellonBasicCoordinates);
  h.zeros = HeaderZeros::LeadingKept;
  EXPECT_EQ(ZeroSuppressionAnswer(h), kExcellonNoTrailingZeros);
  // Whatever unit the header names, the reader follows it from the imperial answer.
  h.unit = HeaderUnit::Metric;
  EXPECT_EQ(MetricAnswer(h), false);
  h.unit = HeaderUnit::Inch;
  EXPECT_EQ(MetricAnswer(h), false);
}

}  // namespace
}  // namespace isolith
