#pragma once
// The instructions of the register machine, as data: X(name). From this list come the enumeration, the names
// and the machine's table of labels.
//
// The format. An instruction is 12 bytes: the operation, three registers a, b, c of 16 bits, and a number
// `imm` of 32 bits. The compiler knows the type of every variable, so the operation names the types (AddInt,
// GetFloat) and nothing is tested when it runs.
//
// The registers of a procedure lie in one row behind its frame, 8 bytes each. First come those of numbers
// (prefix n): an int or a float; a vector takes three in a row. Constants are registers that start with their
// value. Then come those of objects (prefix o): each points to the string, array, matrix or value of a type
// that only the run tells ("any") that it stands for, be that the frame's own, a constant, a global variable
// or an array of the caller. So arrays are passed by reference at no cost.
//
// The result goes to a unless it says otherwise. Jumps go `imm` instructions on from the next one; those that
// go back are counted as steps, and so are calls. Several operations do the work of two that often follow
// each other (JumpLessSmall, StepJumpLess, GetFloatTwice, GetFloatAt); the builder puts them in where no jump
// lands between the two.

// clang-format off
#define VESK_MEL_OPCODES(X) \
    /* Moves. */ \
    X(MoveNumber)    /* na = nb */ \
    X(MoveVector)    /* na.. = nb.. */ \
    X(MoveObject)    /* oa = ob */ \
    X(TakeObject)    /* oa = ob, which is not needed any more */ \
    X(AssignMatrix)  /* matrix oa = ob: an error when oa has a size, and another one */ \
    X(ZeroObject)    /* oa = zero of type b */ \
    X(MakeVector)    /* na.. = <<nb, nc, nimm>> */ \
    X(SplatVector)   /* na.. = <<nb, nb, nb>> */ \
    /* Conversions. */ \
    X(IntToFloat)    /* na = nb */ \
    X(FloatToInt)    /* na = nb */ \
    X(VectorLength)  /* na = |nb..| */ \
    X(IntToText)     /* oa = nb */ \
    X(FloatToText)   /* oa = nb */ \
    X(VectorToText)  /* oa = nb.. */ \
    X(BoxInt)        /* oa = nb, as a value */ \
    X(BoxFloat)      /* oa = nb, as a value */ \
    X(BoxVector)     /* oa = nb.., as a value */ \
    X(UnboxInt)      /* na = ob converted */ \
    X(UnboxFloat)    /* na = ob converted */ \
    X(UnboxVector)   /* na.. = ob converted */ \
    X(ConvertObject) /* oa = ob converted to type c */ \
    X(AssignAny)     /* oa = ob converted to the type that oa has; taken as it is when oa is none */ \
    X(DeclareAny)    /* the variable oa is declared with type b: an error when it holds another */ \
    /* Arithmetic. */ \
    X(AddInt) X(SubInt) X(MulInt) X(DivInt) X(ModInt)          /* na = nb op nc */ \
    X(AddFloat) X(SubFloat) X(MulFloat) X(DivFloat) X(ModFloat) \
    X(AddVector) X(SubVector) X(DivVector) X(ModVector) X(CrossVector) /* na.. = nb.. op nc.. */ \
    X(ScaleVector)   /* na.. = nb.. * nc */ \
    X(DotVector)     /* na = nb.. * nc.. */ \
    X(NegateInt)     /* na = -nb */ \
    X(NegateFloat)   /* na = -nb */ \
    X(NegateVector)  /* na.. = -nb.. */ \
    X(StepInt)       /* na = nb + imm */ \
    X(StepFloat)     /* na = nb + imm */ \
    X(Join)          /* oa = text ob + text oc */ \
    X(Append)        /* text oa += text ob */ \
    X(BinaryAny)     /* oa = ob op oc, the operator is imm */ \
    X(NegateAny)     /* oa = -ob */ \
    /* Comparisons: na is 1 or 0. */ \
    X(LessInt) X(LessEqualInt) X(EqualInt) X(NotEqualInt) \
    X(LessFloat) X(LessEqualFloat) X(EqualFloat) X(NotEqualFloat) \
    X(EqualVector) X(NotEqualVector) \
    X(CompareText)   /* na = text ob op text oc, the operator is imm */ \
    X(TruthOfFloat)  /* na = nb is not 0 */ \
    X(TruthOfAny)    /* na = ob is not 0 */ \
    X(Not)           /* na = int nb is 0 */ \
    /* Jumps. */ \
    X(Jump) \
    X(StepJumpLess) X(StepJumpLessEqual) /* na = na + the number c; jumps while that is op the int nb */ \
    X(AddJumpLess) X(AddJumpLessEqual)   /* na = na + nc; jumps while that is op the int nb */ \
    X(JumpIf)        /* int na is not 0 */ \
    X(JumpUnless)    /* int na is 0 */ \
    X(JumpLessInt) X(JumpLessEqualInt) X(JumpEqualInt) X(JumpNotEqualInt)  /* na op nb */ \
    X(JumpLessSmall) X(JumpGreaterSmall) X(JumpEqualSmall) X(JumpNotEqualSmall) /* int na op the number b */ \
    X(JumpLessFloat) X(JumpLessEqualFloat) X(JumpEqualFloat) X(JumpNotEqualFloat) \
    X(JumpNotLessFloat) X(JumpNotLessEqualFloat)  /* not the same as the opposite order: NaN */ \
    X(JumpUnlessElement) /* int na is not below the size of ob: the end of a loop over an array */ \
    /* Arrays; an element past the end is zero. */ \
    X(GetInt) X(GetFloat) X(GetVector)  /* na = ob[nc] */ \
    X(GetFloatTwice) /* na = nimm = ob[nc] */ \
    X(GetFloatAt)    /* na = ob[k], k being element nc of the int array oimm */ \
    X(GetText)       /* oa = ob[nc] */ \
    X(GetAny)        /* oa = ob[nc], the type of ob is known to the run only */ \
    X(SetInt) X(SetFloat) X(SetVector)  /* oa[nb] = nc */ \
    X(SetText)       /* oa[nb] = oc */ \
    X(SetAny)        /* oa[nb] = value oc, the type of oa is known to the run only */ \
    X(SizeOf)        /* na = elements of ob */ \
    X(MakeMatrix)    /* oa = zero matrix of b rows and c columns */ \
    X(GetMatrix)     /* na = ob[nc][nimm] */ \
    X(SetMatrix)     /* oa[nb][nc] = nimm */ \
    /* Global variables that are numbers; imm is the index in the function's list. */ \
    X(LoadNumber) X(LoadVector)    /* na = global */ \
    X(StoreNumber) X(StoreVector)  /* global = na */ \
    /* Calls. */ \
    X(Call)          /* call site imm; the result goes to the register a, as type b */ \
    X(CallNumbers)   /* na = library function imm of the numbers from nb on */ \
    X(CallValues)    /* library call site imm */ \
    X(ReturnNumber)  /* the int or float na, its type is b */ \
    X(ReturnSum)     /* the int na + nc, its type is b; na may change */ \
    X(Return)        /* the register a, its type is b */ \
    X(ReturnNone) \
    X(Define)        /* procedure imm of the unit */ \
    X(EnterCatch)    /* an error from here on jumps imm; quietly if a is 1 */ \
    X(LeaveCatch)
// clang-format on
