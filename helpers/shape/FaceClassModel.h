#pragma once

namespace krv {

// A small network from the mean looks of a face's letters to the odds of its classes: inputs are centred, scaled and
// limited to -3..3; one hidden layer of tanh; each output is a logarithm of odds. The numbers were
// fitted to the training families of bench/similarity; how good they are on the held-out families it reports.
constexpr int kClassInputs = 3 * 61 + 3;
constexpr int kClassHidden = 24;
enum ClassOutput
{
    kSerifOutput,
    kScriptOutput,
    kSymbolOutput,
    kDisplayOutput,
    kBlackletterOutput,
    kClassOutputs
};

extern const float kClassInputCentres[];
extern const float kClassInputScales[];
extern const float kClassHiddenWeights[]; // for each hidden unit its inputs
extern const float kClassHiddenOffsets[];
extern const float kClassOutputWeights[]; // for each output its hidden units
extern const float kClassOutputOffsets[];

} // namespace krv
