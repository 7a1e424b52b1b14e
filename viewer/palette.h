#pragma once

#include <QColor>
#include <QString>
#include <QStringList>

#include <vector>

namespace Sorvik {
namespace Viewer {

// The colours a chart is painted with: a base colour for each taxon that gets a hue of its own,
// and the shades of it that the taxa below take, lighter outward. Besides the default soft
// colours there are the colour-blind safe Okabe-Ito and Paul Tol's "bright" and "muted" sets,
// and "classic", a hue wheel at full saturation shared out evenly among the taxa.
class Palette
{
public:
    class UnknownPaletteException : public std::exception
    {
    public:
        const char* what() const noexcept override;
    };

    enum class Kind { Soft, OkabeIto, TolBright, TolMuted, Classic };

    // The grey of reads that no taxon holds ("unclassified"), the same in every palette.
    static QColor unassignedGrey();
    // The grey of the slice that gathers the taxa below the minimum share.
    static QColor othersGrey();
    // The faint grey of slices that hold no hue: the centre, and the taxa above the first level
    // that branches.
    static QColor contextGrey();

    explicit Palette(Kind kind = Kind::Soft);
    // By the name the command line and the settings use; throws UnknownPaletteException.
    static Palette byName(const QString& name);
    // "soft", "okabe-ito", "tol-bright", "tol-muted", "classic".
    static QStringList names();
    // The names as the preferences list them.
    static QString title(const QString& name);

    Kind getKind() const { return kind; }
    QString getName() const;

    // n base colours, all different; the first ones are the palette's most distinct.
    std::vector<QColor> baseColours(int n) const;
    // The colour of a taxon depth rings below the one holding base (0: base itself). sibling and
    // siblings tell siblings apart: their shades differ a little in lightness, and in hue by up to
    // hueRoom (a fraction of the hue circle) either side.
    QColor shade(const QColor& base, int depth, int sibling, int siblings, double hueRoom = 0.05) const;

private:
    Kind kind;
};

} // namespace Viewer
} // namespace Sorvik
