#pragma once

namespace ostrelle {

/// The share of a Gaussian of deviation 1 that lies below x.
double gaussianIntegral(double x);

/// The same to within 0.0005, from a table: for shadows, which ask for it at every pixel.
float quickGaussianIntegral(float x);

/// The density of a Gaussian of this deviation at x; 0 where it is below a hundred-thousandth of its peak.
double gaussianDensity(double x, double deviation);

/// The share of a Gaussian of this deviation, centred at x, that lies between two points: what a bar between them
/// becomes at x when it is blurred.
double blurredBar(double x, double from, double to, double deviation);

/// The same by quickGaussianIntegral().
float quickBlurredBar(double x, double from, double to, double deviation);

} // namespace ostrelle
