#include "fontlens/recognizer/Recognizer.h"

namespace kerval::recognizer {

Recognizer::~Recognizer() = default;

} // namespace kerval::recognizer
