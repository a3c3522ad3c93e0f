#include "Karto/Drawing/Fonts.h"

#include <QFontDatabase>
#include <QGuiApplication>

#include <algorithm>
#include <array>

namespace karto::drawing {

namespace {

// The best first.
constexpr std::array roundedFamilies{"Nunito",       "M PLUS Rounded 1c", "Rounded Mplus 1c",
                                     "Varela Round", "Quicksand",         "Comfortaa"};

// Rounded strokes of a lighter face than asked for would be too thin.
bool hasWeight(const QString& family, int weight) {
    return std::ranges::any_of(QFontDatabase::styles(family), [&](const QString& style) {
        const int excess = QFontDatabase::weight(family, style) - weight;
        return excess >= 0 && excess <= QFont::Bold - QFont::DemiBold;
    });
}

} // namespace

QFont systemFont(double size, QFont::Weight weight) {
    auto font = QGuiApplication::font();
    font.setPixelSize(std::max(1, qRound(size)));
    font.setWeight(weight);
    // What lies below a picture is not known: no colour fringes.
    font.setStyleStrategy(QFont::NoSubpixelAntialias);
    return font;
}

QFont roundedFont(double size, QFont::Weight weight) {
    auto font = systemFont(size, weight);
    const auto* const family = std::ranges::find_if(
        roundedFamilies, [&](const char* name) { return hasWeight(QString::fromLatin1(name), weight); });
    if (family != roundedFamilies.end()) {
        font.setFamily(QString::fromLatin1(*family));
    }
    return font;
}

} // namespace karto::drawing
