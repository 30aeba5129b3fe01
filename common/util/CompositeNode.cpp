#include "common/util/CompositeNode.h"

#include "common/util/CompositeIterator.h"

namespace util {

depth_iterator CompositeNode::depthEnd() { return depth_iterator(); }

breadth_iterator CompositeNode::breadthEnd() { return breadth_iterator(); }

}  // namespace util
