#pragma once

// clang-format off
// Functions of JNI 1.6 that the library must not call, in the order of jni.h.
#define HOSTKIT_OTHER_JNI_CALLS(X) \
    X(GetVersion) X(DefineClass) X(FindClass) X(FromReflectedMethod) X(FromReflectedField) \
    X(ToReflectedMethod) X(GetSuperclass) X(IsAssignableFrom) X(ToReflectedField) X(Throw) \
    X(ThrowNew) X(ExceptionOccurred) X(ExceptionDescribe) X(ExceptionClear) X(FatalError) \
    X(PushLocalFrame) X(PopLocalFrame) X(NewGlobalRef) X(DeleteGlobalRef) X(DeleteLocalRef) \
    X(IsSameObject) X(NewLocalRef) X(EnsureLocalCapacity) X(AllocObject) X(NewObject) \
    X(NewObjectV) X(NewObjectA) X(GetObjectClass) X(IsInstanceOf) X(GetMethodID) \
    X(CallObjectMethod) X(CallObjectMethodV) X(CallObjectMethodA) X(CallBooleanMethod) \
    X(CallBooleanMethodV) X(CallBooleanMethodA) X(CallByteMethod) X(CallByteMethodV) \
    X(CallByteMethodA) X(CallCharMethod) X(CallCharMethodV) X(CallCharMethodA) \
    X(CallShortMethod) X(CallShortMethodV) X(CallShortMethodA) X(CallIntMethod) \
    X(CallIntMethodV) X(CallIntMethodA) X(CallLongMethod) X(CallLongMethodV) \
    X(CallLongMethodA) X(CallFloatMethod) X(CallFloatMethodV) X(CallFloatMethodA) \
    X(CallDoubleMethod) X(CallDoubleMethodV) X(CallDoubleMethodA) X(CallVoidMethod) \
    X(CallVoidMethodV) X(CallVoidMethodA) X(CallNonvirtualObjectMethod) \
    X(CallNonvirtualObjectMethodV) X(CallNonvirtualObjectMethodA) \
    X(CallNonvirtualBooleanMethod) X(CallNonvirtualBooleanMethodV) \
    X(CallNonvirtualBooleanMethodA) X(CallNonvirtualByteMethod) X(CallNonvirtualByteMethodV) \
    X(CallNonvirtualByteMethodA) X(CallNonvirtualCharMethod) X(CallNonvirtualCharMethodV) \
    X(CallNonvirtualCharMethodA) X(CallNonvirtualShortMethod) X(CallNonvirtualShortMethodV) \
    X(CallNonvirtualShortMethodA) X(CallNonvirtualIntMethod) X(CallNonvirtualIntMethodV) \
    X(CallNonvirtualIntMethodA) X(CallNonvirtualLongMethod) X(CallNonvirtualLongMethodV) \
    X(CallNonvirtualLongMethodA) X(CallNonvirtualFloatMethod) X(CallNonvirtualFloatMethodV) \
    X(CallNonvirtualFloatMethodA) X(CallNonvirtualDoubleMethod) \
    X(CallNonvirtualDoubleMethodV) X(CallNonvirtualDoubleMethodA) X(CallNonvirtualVoidMethod) \
    X(CallNonvirtualVoidMethodV) X(CallNonvirtualVoidMethodA) X(GetFieldID) X(GetObjectField) \
    X(GetBooleanField) X(GetByteField) X(GetCharField) X(GetShortField) X(GetIntField) \
    X(GetLongField) X(GetFloatField) X(GetDoubleField) X(SetObjectField) X(SetBooleanField) \
    X(SetByteField) X(SetCharField) X(SetShortField) X(SetIntField) X(SetLongField) \
    X(SetFloatField) X(SetDoubleField) X(GetStaticMethodID) X(CallStaticObjectMethod) \
    X(CallStaticObjectMethodV) X(CallStaticObjectMethodA) X(CallStaticBooleanMethod) \
    X(CallStaticBooleanMethodV) X(CallStaticBooleanMethodA) X(CallStaticByteMethod) \
    X(CallStaticByteMethodV) X(CallStaticByteMethodA) X(CallStaticCharMethod) \
    X(CallStaticCharMethodV) X(CallStaticCharMethodA) X(CallStaticShortMethod) \
    X(CallStaticShortMethodV) X(CallStaticShortMethodA) X(CallStaticIntMethod) \
    X(CallStaticIntMethodV) X(CallStaticIntMethodA) X(CallStaticLongMethod) \
    X(CallStaticLongMethodV) X(CallStaticLongMethodA) X(CallStaticFloatMethod) \
    X(CallStaticFloatMethodV) X(CallStaticFloatMethodA) X(CallStaticDoubleMethod) \
    X(CallStaticDoubleMethodV) X(CallStaticDoubleMethodA) X(CallStaticVoidMethod) \
    X(CallStaticVoidMethodV) X(CallStaticVoidMethodA) X(GetStaticFieldID) \
    X(GetStaticObjectField) X(GetStaticBooleanField) X(GetStaticByteField) \
    X(GetStaticCharField) X(GetStaticShortField) X(GetStaticIntField) X(GetStaticLongField) \
    X(GetStaticFloatField) X(GetStaticDoubleField) X(SetStaticObjectField) \
    X(SetStaticBooleanField) X(SetStaticByteField) X(SetStaticCharField) \
    X(SetStaticShortField) X(SetStaticIntField) X(SetStaticLongField) X(SetStaticFloatField) \
    X(SetStaticDoubleField) X(NewString) X(GetStringLength) X(GetStringChars) \
    X(ReleaseStringChars) X(NewStringUTF) X(GetStringUTFLength) X(GetStringUTFChars) \
    X(ReleaseStringUTFChars) X(GetArrayLength) X(NewObjectArray) X(GetObjectArrayElement) \
    X(SetObjectArrayElement) X(NewBooleanArray) X(NewByteArray) X(NewCharArray) \
    X(NewShortArray) X(NewIntArray) X(NewLongArray) X(NewFloatArray) X(NewDoubleArray) \
    X(GetBooleanArrayElements) X(GetByteArrayElements) X(GetCharArrayElements) \
    X(GetIntArrayElements) X(GetLongArrayElements) X(GetDoubleArrayElements) \
    X(ReleaseBooleanArrayElements) X(ReleaseByteArrayElements) X(ReleaseCharArrayElements) \
    X(ReleaseIntArrayElements) X(ReleaseLongArrayElements) X(ReleaseDoubleArrayElements) \
    X(GetBooleanArrayRegion) X(GetByteArrayRegion) X(GetCharArrayRegion) \
    X(GetShortArrayRegion) X(GetIntArrayRegion) X(GetLongArrayRegion) X(GetFloatArrayRegion) \
    X(GetDoubleArrayRegion) X(SetBooleanArrayRegion) X(SetByteArrayRegion) \
    X(SetCharArrayRegion) X(SetShortArrayRegion) X(SetIntArrayRegion) X(SetLongArrayRegion) \
    X(SetFloatArrayRegion) X(SetDoubleArrayRegion) X(RegisterNatives) X(UnregisterNatives) \
    X(MonitorEnter) X(MonitorExit) X(GetJavaVM) X(GetStringRegion) X(GetStringUTFRegion) \
    X(GetPrimitiveArrayCritical) X(ReleasePrimitiveArrayCritical) X(GetStringCritical) \
    X(ReleaseStringCritical) X(NewWeakGlobalRef) X(DeleteWeakGlobalRef) X(ExceptionCheck) \
    X(NewDirectByteBuffer) X(GetDirectBufferAddress) X(GetDirectBufferCapacity) \
    X(GetObjectRefType)
