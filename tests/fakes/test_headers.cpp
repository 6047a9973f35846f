// Stands for the precompiled headers of the tests, and is otherwise empty.
