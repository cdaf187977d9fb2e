#pragma once

#include <functional>

class QThreadPool;

namespace kerval::letters {

// Calls work(i) for 0 <= i < count, in no order, on the calling thread and the free ones of the pool (which may be
// null), and returns when all is done.
void shareWork(QThreadPool* pool, int count, const std::function<void(int)>& work);

} // namespace kerval::letters
