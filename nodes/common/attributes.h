#pragma once
// A node's attributes, declared once, as rows that read like the table of its description.

#include <maya/MFnData.h>
#include <maya/MFnNumericData.h>
#include <maya/MFnUnitAttribute.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>

#include <deque>
#include <initializer_list>

namespace vesk::nodes {

/// Collects the attributes of a node type during its `initialize`. `finish` adds them in the order of
/// declaration and ties every input to every output. Children of a compound are declared as rows of their own
/// before the compound; they come in and influence with it.
class AttributeTable {
    struct Declared;

  public:
    /// Settings of the row declared last. Limits and `usedAsColor` are for numbers, `builder` for arrays.
    class Row {
      public:
        Row& keyable();
        Row& hidden();
        Row& notStorable();
        Row& notReadable();
        Row& notWritable();
        Row& notConnectable();
        Row& notCached();
        /// A disconnected input loses its data.
        Row& resets();
        /// A disconnected element of an array goes.
        Row& deletes();
        /// An array of such attributes, sparse by index.
        Row& array();
        /// An array of which `compute` makes elements.
        Row& builder();
        /// An array to which users connect the next free element.
        Row& nextAvailable();
        Row& min(double value);
        Row& max(double value);
        Row& softMin(double value);
        Row& softMax(double value);
        Row& usedAsColor();
        /// Written by the node alone: not writable, not storable; influenced by every input.
        Row& output();
        /// Saved with the scene, unlike other outputs.
        Row& stored();
        /// Influenced by every input, with the flags as they are.
        Row& influenced();
        /// Neither input nor output: influences nothing.
        Row& aside();

      private:
        friend class AttributeTable;
        explicit Row(Declared& row) : row_(row) {}
        Declared& row_;
    };

    Row boolean(MObject& attribute, const char* longName, const char* shortName, bool value);
    Row shortInteger(MObject& attribute, const char* longName, const char* shortName, short value);
    Row integer(MObject& attribute, const char* longName, const char* shortName, int value);
    /// Of single precision.
    Row real(MObject& attribute, const char* longName, const char* shortName, double value);
    /// Of double precision.
    Row number(MObject& attribute, const char* longName, const char* shortName, double value);
    Row unit(MObject& attribute, const char* longName, const char* shortName, MFnUnitAttribute::Type type,
             double value = 0);
    Row string(MObject& attribute, const char* longName, const char* shortName);
    Row string(MObject& attribute, const char* longName, const char* shortName, const char* value);
    Row matrix(MObject& attribute, const char* longName, const char* shortName);
    Row message(MObject& attribute, const char* longName, const char* shortName);
    Row typed(MObject& attribute, const char* longName, const char* shortName, MFnData::Type type);
    Row generic(MObject& attribute, const char* longName, const char* shortName,
                std::initializer_list<MFnData::Type> accepts);
    /// Fields are numbered from 0.
    Row enumeration(MObject& attribute, const char* longName, const char* shortName,
                    std::initializer_list<const char*> fields, short value = 0);
    /// Three floats, children R, G, B.
    Row color(MObject& attribute, const char* longName, const char* shortName, double r, double g, double b);
    /// Three floats, children X, Y, Z.
    Row point(MObject& attribute, const char* longName, const char* shortName, double x, double y, double z);
    /// A pair or triple of numbers of one kind.
    Row tuple(MObject& attribute, const char* longName, const char* shortName,
              std::initializer_list<MObject*> children);
    Row compound(MObject& attribute, const char* longName, const char* shortName,
                 std::initializer_list<MObject*> children);
    Row curveRamp(MObject& attribute, const char* longName, const char* shortName);
    Row colorRamp(MObject& attribute, const char* longName, const char* shortName);

    /// Makes outputs dirty when the node's state changes, for nodes that show it at once.
    void followState() { followsState_ = true; }

    /// The first failure of a call of the host, success otherwise. Outputs of the node's base class are
    /// influenced as well.
    MStatus finish(std::initializer_list<const MObject*> outputsOfBase = {});

  private:
    enum class Role { kInput, kOutput, kAside };
    struct Declared {
        MObject* attribute;
        Role role = Role::kInput;
        bool isChild = false;
    };
    Row declare(MObject& attribute, const MObject& made);
    void adopt(std::initializer_list<MObject*> children);

    std::deque<Declared> rows_; ///< rows are handed out by reference while more are declared
    MStatus status_;
    bool followsState_ = false;
};

} // namespace vesk::nodes
