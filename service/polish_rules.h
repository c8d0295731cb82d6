// What Improve does beyond correcting: hesitations, repetitions, tone.
#pragma once

#include <string_view>

#include "service/pieces.h"

namespace quillo::service {

enum class Tone { neutral, professional, friendly };

// "um", "uh", and "you know" and "I mean" where they say nothing. English.
void dropFillers(Pieces& pieces);

// "the the" becomes "the"; some words are doubled on purpose.
void dropRepetitions(Pieces& pieces);

// Professional writes contractions in full and casual words plainly; friendly contracts. English.
void applyTone(Pieces& pieces, Tone tone);

}  // namespace quillo::service
