// The template language of the user's format. A template is text with tags such as "<X>" that
// stand for numbers, and optional groups in square brackets that are written only when what they
// say has changed: "G01[ F<V>][ X<X>][ Y<Y>][ Z<Z>]" writes F on a change of motion type or of
// speed, and only the axes that moved. A template is worked in two stages: the groups first
// (ApplyOptionalGroups), then one tag at a time (SubstituteTag).
#pragma once

#include <string>
#include <string_view>

#include "output/postprocessor/PostProcessor.h"

namespace isolith {

// Copies `pattern` without the groups that have nothing to say, and without the brackets of the
// others. In each group the one-letter tags <X> <Y> <Z> <V> <R> <A> (any case) are noted; the
// notes of R and A carry on into the following groups. The first group is a change group when
// any of the six tags is missing from it. A group stays when it is a change group and the motion
// type changed, or for a noted X, Y, Z when that axis changed, V when the speed changed, R or A
// when X or Y changed. An unclosed "[" runs to the end; text outside groups always stays.
std::string ApplyOptionalGroups(std::string_view pattern, int prevType, int newType, double lastV,
                                double newV, double x0, double x1, double y0, double y1, double z0,
                                double z1);

// The text of a number in a number format: printf-like fixed notation with the format's
// decimals; with two or more left digits, a width of left + right (+ 1 for the point) and a
// blank where a plus sign would go. With `noZeros`, zeros after the point and then a lone point
// are cut. A pad other than blank replaces the leading blanks, and the point becomes the
// format's decimal character. With `hexa` all this gives way to the value truncated to a whole
// number in upper-case hexadecimal.
std::string FormatTagValue(double value, const TNumberFormat& format, bool noZeros, bool hexa);

// Replaces every "<tag>" of `line` (the tag compared in upper case, at most 9 characters between
// the brackets) by the value in its format. Other "<" stay as they are.
void SubstituteTag(std::string& line, std::string_view tag, double value,
                   const TNumberFormat& format, bool noZeros, bool hexa);

}  // namespace isolith
