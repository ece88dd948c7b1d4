// The expression tree of a formula. Every node owns its children.
#pragma once

#include <memory>
#include <stdexcept>
#include <vector>

#include "formula/functions.h"
#include "formula/variable_store.h"

namespace formula {

// Reads the nodes' parts to print a tree (formula/tree_printer.h).
class TreePrinter;

// Raised when a formula cannot be parsed or evaluated any further.
class FormulaError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Node {
 public:
  virtual ~Node() = default;
  virtual double Calc(VariableStore& store) const = 0;
  virtual bool IsLvalue() const { return false; }
  virtual void Assign(VariableStore&, double) const {}
};

using NodePtr = std::unique_ptr<Node>;

class NumNode final : public Node {
 public:
  explicit NumNode(double value) : value_(value) {}
  double Calc(VariableStore&) const override { return value_; }

 private:
  double value_;

  friend class TreePrinter;
};

class VarNode final : public Node {
 public:
  explicit VarNode(int id) : id_(id) {}
  // Raises FormulaError (after a line on standard error) when the variable
  // has no value.
  double Calc(VariableStore& store) const override;
  bool IsLvalue() const override { return true; }
  void Assign(VariableStore& store, double value) const override { store.set(id_, value); }
  int id() const { return id_; }

 private:
  int id_;
};

class UMinusNode final : public Node {
 public:
  explicit UMinusNode(NodePtr child) : child_(std::move(child)) {}
  double Calc(VariableStore& store) const override { return -child_->Calc(store); }

 private:
  NodePtr child_;

  friend class TreePrinter;
};

class FunNode final : public Node {
 public:
  FunNode(Function function, NodePtr argument)
      : function_(function), argument_(std::move(argument)) {}
  double Calc(VariableStore& store) const override { return function_(argument_->Calc(store)); }

 private:
  Function function_;
  NodePtr argument_;

  friend class TreePrinter;
};

class BinNode : public Node {
 public:
  BinNode(NodePtr left, NodePtr right) : left_(std::move(left)), right_(std::move(right)) {}

 protected:
  NodePtr left_;
  NodePtr right_;

  friend class TreePrinter;
};

class AssignNode final : public BinNode {
 public:
  using BinNode::BinNode;
  double Calc(VariableStore& store) const override;
};

class MultiNode : public Node {
 public:
  // `flag` true: add (sum) or multiply (product); false: subtract or divide.
  void add(NodePtr child, bool flag) {
    children_.push_back(std::move(child));
    flags_.push_back(flag ? 1 : 0);
  }
  std::size_t size() const { return children_.size(); }

 protected:
  std::vector<NodePtr> children_;
  std::vector<std::uint32_t> flags_;

  friend class TreePrinter;
};

class SumNode final : public MultiNode {
 public:
  double Calc(VariableStore& store) const override;
};

class ProductNode final : public MultiNode {
 public:
  // A divisor of exactly zero leaves " division by zero." in the error
  // collector and makes the whole product 0.
  double Calc(VariableStore& store) const override;
};

}  // namespace formula
