// The radiation field of one infrared emitter below its radiating face, as gimmake puts it into a model's
// table. The face is divided into source elements, each a point source with the same distribution of radiant
// intensity over the directions; what an element gives a point falls with the square of the distance. The
// receiver is a small sphere, so no cosine stands on its side. docs/emission-models.md derives the formulas. An
// emitter has one to some hundred elements and a table up to some million points: a field is one plain loop.
#ifndef TOOLS_GIMFIELD_H
#define TOOLS_GIMFIELD_H

#include "lib/ag.h"

#include <memory>
#include <vector>

/// How an emitter's radiant intensity is spread over the directions of the lower half space. A direction is a
/// unit vector in the emitter's coordinates: x along the body, y across it, z downward.
class GimBEAM
{
public:
    virtual ~GimBEAM() = default;
    /// Radiant intensity, W/sr; u.z >= 0.
    virtual double Intensity(const AgPOINT &u) const = 0;
    /// Integral of the intensity over the lower half space, W.
    virtual double Flux() const = 0;
    /// Its largest intensity, W/sr.
    virtual double Peak() const = 0;
};

/// peak * cos^across(beta) * cos^along(gamma): beta is the angle about the body's axis, gamma the one out of
/// the plane that stands square to it. Equal exponents give peak * cos^n(theta), theta counted from straight
/// down.
class GimCOSINE : public GimBEAM
{
public:
    GimCOSINE(double flux, double aAcross, double aAlong); // W, spread over the lower half space
    double Intensity(const AgPOINT &u) const override;
    double Flux() const override;
    double Peak() const override { return peak; }

private:
    double across;
    double along;
    double peak; // W/sr, straight down
};

/// Intensities given over beta and gamma, from 0 to 90 degrees each; the three other quarters mirror this one.
/// Linear between the angles.
class GimTABLE : public GimBEAM
{
public:
    std::vector<double> across;    // beta in rad, rising from 0 to pi / 2
    std::vector<double> along;     // gamma in rad, rising from 0 to pi / 2
    std::vector<double> intensity; // W/sr; across.size() rows of along.size()

    double Intensity(const AgPOINT &u) const override;
    double Flux() const override;
    double Peak() const override;
    void Scale(double factor);

private:
    double At(size_t row, size_t column) const { return intensity[row * along.size() + column]; }
};

/// Integral of cos^n from -pi/2 to pi/2, n >= 0.
double GimCosineIntegral(double n);

class GimFIELD
{
public:
    /// A face of length x width (m) in the plane z = 0 around the origin; width 0 is a line.
    GimFIELD(double length, double width, std::unique_ptr<GimBEAM> aBeam);

    /// Irradiance of a small sphere's cross-section at p, W/m2; 0 above the face. Symmetric in x and y to the
    /// last bit. A point nearer to an element than NEAR is moved straight down to that distance from it.
    double At(const AgPOINT &p) const;
    /// A distance from the origin beyond which the field is below `stop` (W/m2) in all directions, m.
    double Reach(double stop) const;
    const GimBEAM &Beam() const { return *beam; }
    int Elements() const { return static_cast<int>(elements.size()); }

    static constexpr double NEAR = 0.25; // m; also the largest side of an element

private:
    std::unique_ptr<GimBEAM> beam;
    std::vector<AgPOINT> elements; // centres, z = 0
    double radius;                 // m, of the face around the origin
};

#endif
