#pragma once

#include <cstdint>
#include <vector>

#include "OrvelCore/Sound.h"

/// The feedback sounds, computed from formulas. Every machine and every build gets the same bytes.
/// Samples are mono, between -1 and 1.
namespace OrvelCore::SoundSynth {

/// Samples a second.
inline constexpr std::int32_t sampleRate = 44100;

std::vector<float> samples(LockSound sound);

/// One gain for all samples that brings their loudness to -24 dB, or less where their peak would
/// come above -3 dB. Silence stays as it is.
std::vector<double> level(std::vector<double> samples);

/// Bytes of a WAV file before its samples.
inline constexpr std::uint32_t wavHeaderSize = 44;

/// A WAV file of signed 16 bits. Samples beyond -1 and 1 are clipped.
std::vector<std::uint8_t> wav(const std::vector<float>& samples);

/// Loudness and peak in decibels below full scale; -120 and -240 for silence.
double rmsDB(const std::vector<float>& samples);
double peakDB(const std::vector<float>& samples);

}  // namespace OrvelCore::SoundSynth
