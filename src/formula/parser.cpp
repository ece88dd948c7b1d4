#include "formula/parser.h"

#include <algorithm>
#include <iostream>

namespace formula {
namespace {

// Counts one level of nesting for as long as it lives.
class NestingGuard {
 public:
  explicit NestingGuard(int& depth) : depth_(depth) {
    if (++depth_ > kMaxNesting) {
      std::cerr << "Error: Formula nested too deeply\n" << std::flush;
      throw FormulaError("Formula nested deeper than " + std::to_string(kMaxNesting) + " levels");
    }
  }
  ~NestingGuard() { --depth_; }
  NestingGuard(const NestingGuard&) = delete;
  NestingGuard& operator=(const NestingGuard&) = delete;

 private:
  int& depth_;
};

}  // namespace

ParseStatus Parser::parse(std::string_view text) {
  Scanner scanner(text);
  scanner_ = &scanner;
  status_ = ParseStatus::ok;
  depth_ = 0;
  root_.reset();
  referenced_.clear();
  scanner.next();
  root_ = expression();
  scanner_ = nullptr;
  return status_;
}

// expression = term {("+" | "-") term} | term "=" expression
NodePtr Parser::expression() {
  NodePtr first = term();
  const Token token = scanner_->current();
  if (token == Token::plus || token == Token::minus) {
    auto sum = std::make_unique<SumNode>();
    sum->add(std::move(first), true);
    while (scanner_->current() == Token::plus || scanner_->current() == Token::minus) {
      const bool add = scanner_->current() == Token::plus;
      scanner_->next();
      sum->add(term(), add);
    }
    return sum;
  }
  if (token == Token::assign) {
    scanner_->next();
    NodePtr value = expression();
    if (first == nullptr || !first->IsLvalue()) {
      status_ = ParseStatus::error;
      return value;
    }
    return std::make_unique<AssignNode>(std::move(first), std::move(value));
  }
  return first;
}

// term = factor {("*" | "/") factor}
NodePtr Parser::term() {
  NodePtr first = factor();
  if (scanner_->current() != Token::times && scanner_->current() != Token::divide) return first;
  auto product = std::make_unique<ProductNode>();
  product->add(std::move(first), true);
  while (scanner_->current() == Token::times || scanner_->current() == Token::divide) {
    const bool multiply = scanner_->current() == Token::times;
    scanner_->next();
    product->add(factor(), multiply);
  }
  return product;
}

void Parser::expectRightParenthesis() {
  if (scanner_->current() != Token::rightParenthesis) status_ = ParseStatus::error;
  scanner_->next();
}

// factor = "(" expression ")" | number | "-" factor | identifier ["(" expression ")"]
NodePtr Parser::factor() {
  const NestingGuard nesting(depth_);
  switch (scanner_->current()) {
    case Token::leftParenthesis: {
      scanner_->next();
      NodePtr inner = expression();
      expectRightParenthesis();
      return inner;
    }
    case Token::number: {
      auto number = std::make_unique<NumNode>(scanner_->number());
      scanner_->next();
      return number;
    }
    case Token::minus:
      scanner_->next();
      return std::make_unique<UMinusNode>(factor());
    case Token::identifier: {
      const std::string name = scanner_->identifier();
      if (scanner_->next() == Token::leftParenthesis) return call(name);
      return variable(name);
    }
    default:
      scanner_->next();
      status_ = ParseStatus::error;
      return nullptr;
  }
}

NodePtr Parser::call(const std::string& name) {
  scanner_->next();
  NodePtr argument = expression();
  expectRightParenthesis();
  const int id = symbols_.find(name);
  if (id < 0 || id >= static_cast<int>(kFunctions.size())) {
    std::cerr << "Error: Unknown function \"" << name << "\"\n" << std::flush;
    throw FormulaError("Unknown function \"" + name + "\"");
  }
  return std::make_unique<FunNode>(kFunctions[static_cast<std::size_t>(id)].function,
                                   std::move(argument));
}

NodePtr Parser::variable(const std::string& name) {
  int id = symbols_.find(name);
  if (id < 0) {
    if (closedSymbols_) {
      status_ = ParseStatus::error;
      return nullptr;
    }
    id = symbols_.insert(name);
  }
  if (std::find(referenced_.begin(), referenced_.end(), id) == referenced_.end())
    referenced_.push_back(id);
  return std::make_unique<VarNode>(id);
}

}  // namespace formula
