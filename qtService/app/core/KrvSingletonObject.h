#pragma once

#include <QCoreApplication>
#include <QMutex>
#include <QMutexLocker>

// Gives T a process-wide instance, created as T(nullptr) on first use from any thread and deleted when the application
// object ends. T befriends nobody: its constructor taking a null parent is public.
template <class T>
class KrvSingletonObject
{
public:
    static T* instance()
    {
        QMutexLocker locker(&mutex());
        if (!s_instance) {
            s_instance = new T(nullptr);
            qAddPostRoutine(&KrvSingletonObject::destroy);
        }
        return s_instance;
    }

private:
    static QMutex& mutex()
    {
        static QMutex mutex(QMutex::Recursive);
        return mutex;
    }

    static void destroy()
    {
        QMutexLocker locker(&mutex());
        delete s_instance;
        s_instance = nullptr;
    }

    static T* s_instance;
};

template <class T>
T* KrvSingletonObject<T>::s_instance = nullptr;
