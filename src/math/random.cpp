// Random deviates: the uniform generator (three congruential sequences and
// a shuffle table), normal deviates by the polar method and Poisson
// deviates by multiplication or rejection.  The constants fix the streams:
// the same seed gives the same numbers on every target.

#include <cmath>

#include "math/math.h"
#include "vlcore.h"

namespace vl::math {

namespace {

struct Sequence {
    int32_t multiplier, increment, modulus;
};
constexpr Sequence kSeq1 = {7141, 54773, 259200};
constexpr Sequence kSeq2 = {8121, 28411, 134456};
constexpr Sequence kSeq3 = {4561, 51349, 243000};
constexpr double kInvModulus1 = 3.858024691358025e-06;  // 1/259200
constexpr double kInvModulus2 = 7.437377283274826e-06;  // 1/134456
constexpr int32_t kTableSize = 97;

// What a draw gives when the generator cannot draw at all.
constexpr double kFailedDraw = -1.0;
// The Poisson rejection method accepts more than half of its candidates;
// this many refusals in a row mean the mean is beyond its arithmetic.
constexpr int kPoissonRounds = 10000;
constexpr double kPoissonDirectLimit = 12.0;
constexpr double kPi = 3.1415926;

// One step of a sequence in 32-bit signed arithmetic.  The products stay
// inside 32 bits for every state the generator can reach, and C++'s
// remainder takes the dividend's sign, as the streams require.
int32_t step(int32_t x, const Sequence& s) noexcept { return (s.multiplier * x + s.increment) % s.modulus; }

double table_value(int32_t ix1, int32_t ix2) noexcept { return (ix1 + ix2 * kInvModulus2) * kInvModulus1; }

void restart(UniformState& st, int32_t seed) noexcept {
    // 1. The seed enters the first sequence; the subtraction wraps in 32
    //    bits for the most negative seeds, the same way on every target.
    st.started = 1;
    st.ix1 = static_cast<int32_t>(static_cast<uint32_t>(kSeq1.increment) - static_cast<uint32_t>(seed)) % kSeq1.modulus;
    // 2. The other two sequences start from it.
    st.ix1 = step(st.ix1, kSeq1);
    st.ix2 = st.ix1 % kSeq2.modulus;
    st.ix1 = step(st.ix1, kSeq1);
    st.ix3 = st.ix1 % kSeq3.modulus;
    // 3. Fill the shuffle table.
    for (int32_t j = 1; j <= kTableSize; ++j) {
        st.ix1 = step(st.ix1, kSeq1);
        st.ix2 = step(st.ix2, kSeq2);
        st.r[static_cast<std::size_t>(j)] = table_value(st.ix1, st.ix2);
    }
}

}  // namespace

double ran1(int32_t* idum) noexcept {
    UniformState& st = uniform_state;
    // 1. Restart on a negative argument and on the first call.
    if (*idum < 0 || !st.started) {
        restart(st, *idum);
        *idum = 1;
    }
    // 2. Step all three sequences.
    st.ix1 = step(st.ix1, kSeq1);
    st.ix2 = step(st.ix2, kSeq2);
    st.ix3 = step(st.ix3, kSeq3);
    // 3. The third sequence picks the table slot.
    const int32_t j = 1 + (kTableSize * st.ix3) / kSeq3.modulus;
    // 4. Only sequences gone negative (a restart above 54773) point outside
    //    the table; that draw fails and the table stays as it is.
    if (j > kTableSize || j < 1) {
        math_error_flag = 1;
        return kFailedDraw;
    }
    // 5. Hand out the slot and refill it.
    const auto slot = static_cast<std::size_t>(j);
    const double value = st.r[slot];
    st.r[slot] = table_value(st.ix1, st.ix2);
    return value;
}

double gasdevex(int32_t* idum, uint32_t reset) noexcept {
    NormalState& st = normal_state;
    // 1. A reset drops the spare.
    if (reset & 1u) {
        st.spare_present = 0;
        return 0.0;
    }
    // 2. The second deviate of the last pair.
    if (st.spare_present) {
        st.spare_present = 0;
        return st.spare;
    }
    // 3. A point uniform in the unit disc, centre excluded.
    double x1 = 0.0, x2 = 0.0, s = 0.0;
    do {
        const double u1 = ran1(idum);
        const double u2 = ran1(idum);
        // A generator that draws below 0 would never land in the disc.
        if (u1 < 0.0 || u2 < 0.0) {
            math_error_flag = 1;
            return 0.0;
        }
        x1 = 2.0 * u1 - 1.0;
        x2 = 2.0 * u2 - 1.0;
        s = x1 * x1 + x2 * x2;
    } while (s >= 1.0 || s == 0.0);
    // 4. Two independent deviates; keep one.
    const double f = std::sqrt(-2.0 * std::log(s) / s);
    st.spare = x1 * f;
    st.spare_present = 1;
    return x2 * f;
}

double poisson_dev(double mean, int32_t* idum) noexcept {
    PoissonState& st = poisson_state;
    if (mean < kPoissonDirectLimit) {
        // 1. Small means: multiply uniforms until the product drops to
        //    exp(-mean).
        if (mean != st.last_mean) {
            st.last_mean = mean;
            st.g = std::exp(-mean);
        }
        double k = -1.0, t = 1.0;
        do {
            k += 1.0;
            const double u = ran1(idum);
            if (u < 0.0) {
                math_error_flag = 1;
                return kFailedDraw;
            }
            t *= u;
        } while (t > st.g);
        return k;
    }
    // 2. Large means: rejection from a Lorentzian.  A mean that is not a
    //    finite number has nothing to compare with.
    if (!std::isfinite(mean)) {
        math_error_flag = 1;
        return kFailedDraw;
    }
    if (mean != st.last_mean) {
        st.last_mean = mean;
        st.sq = std::sqrt(2.0 * mean);
        st.alxm = std::log(mean);
        st.g = mean * st.alxm - gammln(mean + 1.0);
    }
    for (int round = 0; round < kPoissonRounds; ++round) {
        // 3. A candidate from the comparison function.
        double y = 0.0, k = 0.0;
        do {
            const double u = ran1(idum);
            if (u < 0.0) {
                math_error_flag = 1;
                return kFailedDraw;
            }
            y = std::tan(kPi * u);
            k = st.sq * y + mean;
        } while (k < 0.0);
        k = std::floor(k);
        // 4. Accept it with the ratio of the two densities.
        const double t = 0.9 * (1.0 + y * y) * std::exp(k * st.alxm - gammln(k + 1.0) - st.g);
        const double accept = ran1(idum);
        if (accept < 0.0) break;
        if (accept <= t) return k;
    }
    math_error_flag = 1;
    return kFailedDraw;
}

}  // namespace vl::math

using namespace vl::math;

extern "C" {

double VLAPI ran1_export(int32_t* idum) noexcept { return ran1(idum); }

double VLAPI gasdevex_export(int32_t* idum, uint32_t reset) noexcept { return gasdevex(idum, reset); }

int32_t VLAPI ran1_dev_export_ptr(int32_t seed, double* out) noexcept {
    // The caller's seed is copied, so a negative one restarts every time.
    *out = ran1(&seed);
    return 0;
}

int32_t VLAPI norm_dev_export_ptr(int32_t seed, double* out) noexcept {
    *out = gasdevex(&seed, 0);
    return 0;
}

}  // extern "C"
