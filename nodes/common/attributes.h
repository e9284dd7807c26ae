#pragma once
// A node's attributes, declared once, as rows that read like the table of its description.

#include <maya/MFnData.h>
#include <maya/MFnNumericData.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>

#include <initializer_list>
#include <vector>

namespace vesk::nodes {

/// Collects the attributes of a node type during its `initialize`. `finish` adds them in the order of
/// declaration and ties every input to every output.
class AttributeTable {
  public:
    /// Settings of the row declared last.
    class Row {
      public:
        Row& keyable();
        Row& notStorable();
        /// A disconnected input loses its data.
        Row& resets();
        Row& min(double value);
        Row& softMax(double value);
        /// Written by the node alone: not writable, not storable.
        Row& output();

      private:
        friend class AttributeTable;
        Row(MObject& attribute, bool& isOutput) : attribute_(attribute), isOutput_(isOutput) {}
        MObject& attribute_;
        bool& isOutput_;
    };

    Row boolean(MObject& attribute, const char* longName, const char* shortName, bool value);
    Row integer(MObject& attribute, const char* longName, const char* shortName, int value);
    Row string(MObject& attribute, const char* longName, const char* shortName);
    Row typed(MObject& attribute, const char* longName, const char* shortName, MFnData::Type type);
    Row generic(MObject& attribute, const char* longName, const char* shortName,
                std::initializer_list<MFnData::Type> accepts);
    /// Fields are numbered from 0.
    Row enumeration(MObject& attribute, const char* longName, const char* shortName,
                    std::initializer_list<const char*> fields, short value = 0);

    /// The first failure of a call of the host, success otherwise.
    MStatus finish();

  private:
    struct Declared {
        MObject* attribute;
        bool isOutput;
    };
    Row declare(MObject& attribute, const MObject& made);

    std::vector<Declared> rows_;
    MStatus status_;
};

} // namespace vesk::nodes
