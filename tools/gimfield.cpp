#include "tools/gimfield.h"

#include <algorithm>
#include <cmath>

namespace
{
/// The angles beta and gamma of a direction of the lower half space, both as distance from 0, rad.
void BeamAngles(const AgPOINT &u, double &beta, double &gamma)
{
    beta = std::atan2(std::fabs(u.y), u.z);
    gamma = std::asin(std::min(1.0, std::fabs(u.x)));
}

/// The interval of a rising list that holds the value, and the share of the way through it.
size_t Interval(const std::vector<double> &list, double value, double &share)
{
    size_t upper = static_cast<size_t>(std::upper_bound(list.begin(), list.end(), value) - list.begin());
    upper = std::clamp<size_t>(upper, 1, list.size() - 1);
    share = std::min(1.0, (value - list[upper - 1]) / (list[upper] - list[upper - 1]));
    return upper - 1;
}

/// Centres of the pieces of a side that lies around 0, none longer than GimFIELD::NEAR.
std::vector<double> Centres(double side)
{
    int count = std::max(1, static_cast<int>(std::ceil(side / GimFIELD::NEAR)));
    std::vector<double> centres(count);
    for (int i = 0; i < count; ++i)
        centres[i] = ((i + 0.5) / count - 0.5) * side;
    return centres;
}
} // namespace

double GimCosineIntegral(double n)
{
    return std::sqrt(AgPI) * std::exp(std::lgamma((n + 1) / 2) - std::lgamma(n / 2 + 1));
}

GimCOSINE::GimCOSINE(double flux, double aAcross, double aAlong)
    : across(aAcross), along(aAlong), peak(flux / (GimCosineIntegral(aAcross) * GimCosineIntegral(aAlong + 1)))
{
}

double GimCOSINE::Intensity(const AgPOINT &u) const
{
    if (across == along)
        return peak * std::pow(u.z, across);
    double cosGamma = std::sqrt(std::max(0.0, 1 - u.x * u.x));
    double cosBeta = cosGamma > 0 ? std::min(1.0, u.z / cosGamma) : 0;
    return peak * std::pow(cosBeta, across) * std::pow(cosGamma, along);
}

double GimCOSINE::Flux() const
{
    return peak * GimCosineIntegral(across) * GimCosineIntegral(along + 1);
}

double GimTABLE::Intensity(const AgPOINT &u) const
{
    double beta, gamma, dBeta, dGamma;
    BeamAngles(u, beta, gamma);
    size_t row = Interval(across, beta, dBeta);
    size_t column = Interval(along, gamma, dGamma);
    double inner = At(row, column) * (1 - dGamma) + At(row, column + 1) * dGamma;
    double outer = At(row + 1, column) * (1 - dGamma) + At(row + 1, column + 1) * dGamma;
    return inner * (1 - dBeta) + outer * dBeta;
}

/// The interpolated intensity integrates exactly: the trapezoid over beta, and over gamma, with the solid angle
/// cos(gamma) dgamma dbeta, the antiderivative (a + b gamma) sin(gamma) + b cos(gamma).
double GimTABLE::Flux() const
{
    double quarter = 0;
    for (size_t column = 0; column + 1 < along.size(); ++column) {
        double g0 = along[column];
        double g1 = along[column + 1];
        double a = 0; // integral over beta at g0
        double b = 0; // and at g1
        for (size_t row = 0; row + 1 < across.size(); ++row) {
            double step = (across[row + 1] - across[row]) / 2;
            a += step * (At(row, column) + At(row + 1, column));
            b += step * (At(row, column + 1) + At(row + 1, column + 1));
        }
        double slope = (b - a) / (g1 - g0);
        quarter += b * std::sin(g1) - a * std::sin(g0) + slope * (std::cos(g1) - std::cos(g0));
    }
    return 4 * quarter;
}

double GimTABLE::Peak() const
{
    return *std::max_element(intensity.begin(), intensity.end());
}

void GimTABLE::Scale(double factor)
{
    for (double &value : intensity)
        value *= factor;
}

GimFIELD::GimFIELD(double length, double width, std::unique_ptr<GimBEAM> aBeam)
    : beam(std::move(aBeam)), radius(std::hypot(length, width) / 2)
{
    for (double x : Centres(length)) {
        for (double y : Centres(width))
            elements.push_back({x, y, 0});
    }
}

double GimFIELD::At(const AgPOINT &p) const
{
    if (p.z < 0)
        return 0;
    double sum = 0;
    for (const AgPOINT &e : elements) {
        AgPOINT u(std::fabs(p.x) - e.x, std::fabs(p.y) - e.y, p.z);
        double side = u.x * u.x + u.y * u.y;
        double square = side + u.z * u.z;
        if (square < NEAR * NEAR) {
            square = NEAR * NEAR;
            u.z = std::sqrt(square - side);
        }
        sum += beam->Intensity(u / std::sqrt(square)) / square;
    }
    return sum / static_cast<double>(elements.size());
}

double GimFIELD::Reach(double stop) const
{
    return radius + std::max(NEAR, std::sqrt(beam->Peak() / stop));
}
